#pragma once

#include <cstdint>
#include <string>

#include "control/site_list.h"
#include "environment/command_set.h"
#include "link/session_screen.h"
#include "platform/trap.h"
#include "rules/business_rules.h"
#include "session/operations.h"
#include "session/session_gate.h"

namespace qvrcom::control {

// One statistics job that somebody asks for.
struct StatisticsOrder {
  SiteRow site;
  std::int32_t partition = 1;  // 1 to 64
  std::string operation = session::operation::kRetrieveStatistics;
};

enum class RequestResult {
  kNotDone,  // refused, failed or cancelled; a message has said which
  kDone,     // the operation ran to its end; a retrieval has left its file
  kBusy,     // another program has the session
};

struct StatisticsRequestParts {
  rules::BusinessRulesParts rules;
  environment::DataBase& database;
  session::SessionGate& gate;
  link::SessionScreen& screen;
};

// Shows a statistics file that a session has left.
class StatisticsDisplay {
 public:
  virtual ~StatisticsDisplay() = default;
  virtual void ShowStatistics(const std::string& csvFile) = 0;
};

// The bridge from a user's wish to the session dialog.
class StatisticsRequest {
 public:
  StatisticsRequest(const StatisticsRequestParts& parts, StatisticsDisplay& display);

  // RetrieveStatSingPartition for a device of the new kind. A card type of exactly "OLD" is answered with a
  // message instead (kNotDone); all others count as new.
  RequestResult run(const std::string& card_type, const StatisticsOrder& order);

  // Fills the session values, runs the session dialog and hands the file it left to the display. Any failure
  // is a box without description; the session values keep what was set so far.
  RequestResult RetrieveStatSingPartition(const StatisticsOrder& order);

 private:
  bool refuses(const SiteRow& site);
  void take_over(const StatisticsOrder& order);
  void prepare_files();
  void name_session_site();
  void fill_site_table(const SiteRow& row);
  RequestResult result_of(const StatisticsOrder& order) const;

  StatisticsRequestParts parts_;
  StatisticsDisplay& display_;
  platform::Trap trap_;
};

}  // namespace qvrcom::control
