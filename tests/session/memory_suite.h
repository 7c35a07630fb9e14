#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/text.h"
#include "doubles/bar_rows.h"
#include "doubles/manual_clock.h"
#include "doubles/manual_scheduler.h"
#include "doubles/memory_channel.h"
#include "doubles/memory_data.h"
#include "doubles/memory_programs.h"
#include "doubles/recording_components.h"
#include "session/frm_response.h"
#include "session/scheduler_link.h"
#include "session/session_run.h"

namespace qvrcom::session {

// JobPilot as the library meets it: on request 1 it lists every line of the index in `result_file` and
// writes what the scripts fetch; it answers as soon as the session dialog stands.
struct MemoryScheduler {
  MemoryScheduler(doubles::MemoryChannel& channel_, doubles::MemoryFiles& files_)
      : channel(channel_), files(files_) {}

  void open() {
    window = channel.open_window(
        "JOBPILOT", [this](auto, auto, auto, std::int64_t request) { return request == 1 ? run() : 0; });
  }

  std::int64_t run() {
    index = files.content[folder + "index.sch"];
    for (const std::string_view line : base::lines_of(index)) {
      if (line.empty() || result_file.empty()) continue;
      files.content[folder + result_file].append(line).append("\r\n");
      const std::string script = files.content[std::string(base::split(line, ";")[2])];
      scripts.push_back(script);
      for (const std::string_view command : base::lines_of(script))
        transfer(command);
      if (!report.empty()) write_report(std::string(base::split(line, ";")[2]));
    }
    if (vanishes) window.reset();
    answers = true;
    return 0;
  }

  void write_report(const std::string& script_path) {
    std::string& text = files.content[script_path.substr(0, script_path.size() - 3) + "rpt"];
    text = "QVRREPORT;1;\r\n" + report;
  }

  void transfer(std::string_view command) {
    const auto begin = command.find("LOCALFILE=");
    if (begin == std::string_view::npos) return;
    const std::string local(base::split(command.substr(begin + 10), ";")[0]);
    if (command.starts_with("FTPPUT")) uploads.push_back(files.content[local]);
    const auto bytes = sends(local);
    const bool fetches = result_file == "completed.sch" || !report.empty();
    if (command.starts_with("FTPGET") && fetches && bytes) files.content[local] = *bytes;
  }

  void answer() {
    const auto dialog = channel.find_window("RESPONSE DIALOG");
    if (!answers || dialog == 0) return;
    answers = false;
    channel.post(dialog, channel.register_message("CBL_SCHEDULER_QVRCOM"), 0, 0);
  }

  doubles::MemoryChannel& channel;
  doubles::MemoryFiles& files;
  std::unique_ptr<platform::Window> window;
  std::string folder = "S:\\";
  std::string result_file = "completed.sch";  // "" leaves the jobs alone
  std::string report;  // of every job, without its first line; "" for a scheduler that writes none
  bool vanishes = false;
  bool answers = false;
  std::string index;  // as it was when the request came
  std::vector<std::string> scripts, uploads;
  // What the device has for a local file; nothing when it has none.
  std::function<std::optional<std::string>(const std::string& local)> sends = [](const std::string&) {
    return "Line,Calls\r\n1,2\r\n";
  };
};

// What the windows of one run were shown.
struct Shown {
  frmResponse* dialog = nullptr;
  std::vector<std::string> infos, complaints;
  std::string hint, caption;
  bool info_visible = false, hint_visible = false, enabled = true, visible = true, timer = false;
  int closed = 0;
};

// A terminal: keeps what it is shown, presses the button when the activation is over, and Cancel when the
// scheduler is not there.
struct RecordingView : SessionWindow {
  explicit RecordingView(Shown& kept) : shown(kept) {}
  void set_info(const std::string& text) override { shown.infos.push_back(text); }
  void set_info_visible(bool value) override { shown.info_visible = value; }
  void set_hint(const std::string& text) override { shown.hint = text; }
  void set_hint_visible(bool value) override { shown.hint_visible = value; }
  void set_cancel(const std::string& text) override { shown.caption = text; }
  void set_cancel_enabled(bool value) override { shown.enabled = value; }
  void set_cancel_visible(bool value) override { shown.visible = value; }
  void set_timer(bool value) override { shown.timer = value; }
  void close() override { ++shown.closed; }
  void scheduler_not_found() override { scheduler_gone("not found"); }
  void scheduler_gone(const std::string& sentence) override {
    shown.complaints.push_back(sentence);
    if (shown.dialog != nullptr) shown.dialog->cmdCancel_Click();
  }
  void show_modal(frmResponse& dialog) override {
    shown.dialog = &dialog;
    dialog.Form_Activate();
    shown.dialog = nullptr;
  }
  Shown& shown;
};

// A script up to its commands, the commands of a transfer, and the line of the job in the index.
inline std::string script_head(const std::string& description, const std::string& site_key = "7",
                               const std::string& address = "FTPIPADDRESS=10.0.0.5") {
  return "SITENAME=USA_Office;\r\nSITEID=101;\r\nQVRID=" + site_key + ";\r\nDESCRIPTION=" + description +
         ";\r\nSTARTDATE=46341.5070023148;\r\nSTOPDATE=46341.5070023148;\r\nINTERVAL=;\r\nPERIOD=;\r\n" +
         address + ";\r\nFTPUSER=admin;\r\nFTPPASSWORD=secret;\r\n";
}
inline std::string transfer(const std::string& lines) {
  return "FTPCONNECT;\r\n" + lines + "FTPDISCONNECT;\r\n";
}
inline std::string index_line(const std::string& description, const std::string& job,
                              const std::string& site_key = "7") {
  return "46341.5070023148;15/11/2026 12:10:05^" + description + "^USA_Office^101^46341.5070023148^^^" +
         site_key + "^;S:\\" + job + "\\" + job + ".scr;\r\n";
}

// The library on memory parts, with one site of new firmware filled in and the scheduler running. The
// scheduler folder is "S:\".
struct MemorySuite : doubles::MemoryData {
  MemorySuite() {
    machine.special_folders = {{35, "C:\\Data"}, {46, "C:\\Docs"}};
    for (const char* folder :
         {"C:\\Data\\Corbelin\\QVRCOM+\\Scheduler", "C:\\Docs\\Corbelin\\QVRCOM+\\Stats",
          "C:\\Docs\\Corbelin\\QVRCOM+\\Msgs", "C:\\Docs\\Corbelin\\QVRCOM+\\SAMELogs", "S:"})
      files.make_folders(folder);
    engine.answer("File_Handling", {"DefaultPathname", "DefaultFilename", "AutoIncrements"},
                  {{std::nullopt, std::nullopt, ""}});
    // A table of the database has a row, and each partition its CSV.
    components.answers = {{"Get_Partition_Rows", "PartitionID|1"}, {"Get_Current_Config_Rows", "ID|5"}};
    components.usual = [](auto operation, auto arguments) {
      return "OK" + (operation == "WriteStatsCsv" ? "Stats" + arguments[1] + ".csv" : "");
    };
    session.run.SchedulerFolder = "S:\\";
    session.run.CurrentOperation = operation::kRetrieveStatistics;
    session.run.PartitionID = "3";
    session.site.LoginName = "admin";
    session.site.DeviceGeneration = "NEW";
    session.site.SelectedSites = {""};
    add_site("USA_Office", "101", "7", "6.62");
    scheduler.open();
    ui.on_pump = [this] {
      if (on_event) on_event();
      scheduler.answer();
      channel.deliver();
    };
  }

  void add_site(const char* name, const char* user_id, const char* id, const char* firmware) {
    base::SiteConnection site;
    site.fields = {name, user_id, id, "10.0.0.5", "", "", " secret ", "0", "", "", "", firmware, ""};
    session.site.SiteConnections.push_back(site);
    session.site.SelectedSites.insert(session.site.SelectedSites.end() - 1,
                                      std::string(name) + " - " + user_id);
  }

  SessionParts parts() {
    return {{session, ui, clock, files, folders, dbase, components, xml}, link, channel, control};
  }

  // Every request in order, "J" to JobPilot, "R" to RePilot, "?" to no window.
  std::string requests() const {
    std::string all;
    for (const auto& post : channel.posts) {
      if (post.message == "CBL_SCHEDULER_QVRCOM") continue;
      all += (all.empty() ? "" : " ") + (post.title.empty() ? "?" : post.title.substr(0, 1));
      all += std::to_string(post.value);
    }
    return all;
  }

  // What is in the scheduler folder below its own files, and the index when it lists something.
  std::vector<std::string> left_behind() const {
    std::vector<std::string> all;
    for (const std::string& folder : files.folders) {
      if (folder.starts_with("S:\\")) all.push_back(folder.substr(3));
    }
    const auto index = files.content.find("S:\\index.sch");
    if (index != files.content.end() && index->second.size() > 2) all.push_back("index.sch");
    return all;
  }

  // Lines of the three pending lists.
  std::size_t pending_lines() const {
    std::size_t count = 0;
    for (const auto& [path, text] : files.content) {
      for (const std::string_view line : base::lines_of(path.ends_with("ToProcess.sch") ? text : ""))
        count += line.empty() ? 0 : 1;
    }
    return count;
  }

  doubles::ManualClock clock;
  doubles::MemoryChannel channel;
  doubles::MemoryPrograms programs;
  doubles::RecordingComponents components;
  doubles::BarRows xml;
  base::Session session;
  doubles::ManualScheduler control;
  session::SchedulerLink link{{session, ui, clock, files, programs, channel, folders}};
  MemoryScheduler scheduler{channel, files};
  std::function<void()> on_event;
};

// A whole run of the dialog on memory parts.
struct DialogRun : MemorySuite, SessionWindows {
  void go(std::span<const Operation> table = operations()) {
    frmResponse dialog(parts(), window, table);
    if (!dialog.Form_Load()) return;
    window.show_modal(dialog);
    dialog.Form_Unload();
    result = dialog.result();
  }
  // As a request has it.
  void go_hosted() { result = SessionRun(parts(), *this).show_modal(); }
  std::unique_ptr<SessionWindow> make() override { return std::make_unique<RecordingView>(view); }

  // Presses Cancel once `when` holds while events run.
  void cancel_when(std::function<bool()> when) {
    on_event = [this, when] {
      if (view.dialog != nullptr && !view.closed && when()) view.dialog->cmdCancel_Click();
    };
  }
  void cancel_at(const std::string& info) {
    cancel_when([this, info] { return !view.infos.empty() && view.infos.back() == info; });
  }

  Shown view;
  RecordingView window{view};
  SessionResult result;
};

}  // namespace qvrcom::session
