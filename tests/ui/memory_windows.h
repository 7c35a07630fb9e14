#pragma once

#include <QCoreApplication>

#include "doubles/manual_scheduler.h"
#include "doubles/memory_lock.h"
#include "session/memory_suite.h"
#include "session/session_gate.h"
#include "session/session_run.h"
#include "sitebook/site_book.h"
#include "ui/frm_response.h"
#include "ui/uc_statistics_main.h"

namespace qvrcom::ui {

// The statistics control with real windows on a memory suite with the sites given; what viewer and chooser
// are told is kept.
struct MemoryWindows : control::StatisticsViewer, control::FileChooser {
  explicit MemoryWindows(const std::vector<const char*>& site_names) {
    list_sites(site_names);
    suite.session.site = {};
    suite.on_event = [] { QCoreApplication::processEvents(); };
  }

  // What the site book answers from now on.
  void list_sites(const std::vector<const char*>& names, const char* firmware = "6.62",
                  const base::Field& card_type = std::nullopt) {
    std::vector<std::vector<base::Field>> rows;
    for (const char* name : names)
      rows.push_back({std::to_string(7 + rows.size()), name, std::to_string(101 + rows.size()), card_type,
                      "0", "10.0.0.5", "10", "secret", "", "", firmware});
    const std::vector<std::string> columns{"SiteID",
                                           "User_Defined_Site_Name",
                                           "User_Defined_Site_ID",
                                           "ControlCardType",
                                           "ConnectMethodID",
                                           "IPLAN",
                                           "IPMODEM",
                                           "AccessCode",
                                           "DialupConnection",
                                           "NumberToDial",
                                           "FirmwareVersion"};
    auto earlier = std::exchange(suite.engine.answers, {});
    suite.engine.answer("SELECT SiteID, User", columns, rows);
    suite.engine.answer("SELECT FirmwareVersion FROM Site", {"FirmwareVersion"}, {{firmware}});
    suite.engine.answer("FROM Site", columns, rows);
    for (auto& answer : earlier)
      suite.engine.answers.push_back(std::move(answer));
  }

  void hand_over(const std::string& csv_file) override { viewed.push_back(csv_file); }
  void show_modal() override {}
  std::optional<std::string> open_file(const control::FileChoice&) override { return chosen; }

  StatisticsMainParts parts() {
    return {{suite.parts().rules, database, gate, screen, suite.link, site_book}, *this, *this};
  }

  session::MemorySuite suite;
  doubles::MemoryLock lock;
  std::vector<std::string> viewed;
  std::optional<std::string> chosen;
  int logs_opened = 0;
  ResponseDialogs dialogs{{{},
                           [this] { return suite.session.run.SessionStatus == "Error"; },
                           [this](QWidget*) { ++logs_opened; }}};
  session::SessionRun screen{suite.parts(), dialogs};
  doubles::ManualScheduler control;
  session::SessionGate gate{lock, suite.ui};
  environment::DataBase database{suite.connection};
  sitebook::SiteBook site_book{suite.connection};
};

}  // namespace qvrcom::ui
