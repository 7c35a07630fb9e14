#include "session/system_commands.h"

#include <gmock/gmock.h>

#include "base/fault.h"
#include "session/memory_suite.h"

namespace qvrcom::session {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string kName = "Nov1526121005000";
const std::string kJob = "S:\\" + kName + "\\";
const images::ClockRecord kClock{0x04030201, 0x08070605};
const std::string kClockBytes = "\x01\x02\x03\x04\x05\x06\x07\x08";

// Calls the commands on memory parts and keeps what they give.
struct CommandRun : session::DialogRun {
  CommandRun() {
    files.content["S:\\given"] = "12345";
    scheduler.sends = [](const std::string& local) -> std::optional<std::string> {
      if (local.ends_with("time")) return kClockBytes;
      if (local.ends_with("sysinfo.dat")) return std::string(71, '\x01');
      if (local.ends_with("msgindexP 3.dat")) return std::string("\0\0\xFA\0\0\x01\xF4\0", 8);
      return "the log";
    };
    on_event = [this] { active_throughout &= session.run.SystemCommandActive; };
  }

  session::SessionRun screen{parts(), *this};
  SystemCommands commands{parts().rules, link, screen};
  CommandSite site{"USA_Office", "101", "9", 1, "Line", "555", " 10.0.0.6 ", "", " secret "};
  std::string status = "?", log;
  images::ClockRecord device_clock{};
  images::FirmwareRecord firmware{};
  bool active_throughout = true;
};

struct Case {
  const char* operation;
  std::string lines;  // between FTPCONNECT and FTPDISCONNECT
  void (*call)(CommandRun&);
  bool keeps_folder = false;
};

std::string fetch(const std::string& remote, const std::string& local) {
  return "FTPGET;REMOTEFILE=" + remote + ";LOCALFILE=" + kJob + local + ";SIZE=20000;\r\n";
}
std::string send(const std::string& remote, const std::string& local, const char* size) {
  return "FTPPUT;REMOTEFILE=" + remote + ";LOCALFILE=" + kJob + local + ";SIZE=" + size + ";\r\n";
}

const Case kCases[] = {
    {"Get Log File", fetch("log", "log"),
     [](CommandRun& r) { r.commands.GetLogFile(r.site, r.log, r.status); }, true},
    {"Get and Reset Log File", fetch("log", "log") + "FTPDELETE;log;\r\n",
     [](CommandRun& r) { r.commands.GetAndResetLogFile(r.site, r.log, r.status); }, true},
    {"Reset Log File", "FTPDELETE;log;\r\n",
     [](CommandRun& r) { r.commands.ResetLogFile(r.site, r.status); }},
    {"Get Date And Time", fetch("time", "time"),
     [](CommandRun& r) { r.commands.GetDateAndTime(r.site, r.device_clock, r.status); }},
    {"Set Date And Time", send("time", "time", "8"),
     [](CommandRun& r) { r.commands.SetDateAndTime(r.site, kClock, r.status); }},
    {"Launch Telnet Session", "", [](CommandRun& r) { r.commands.Launch_TelnetSession(r.site, r.status); }},
    {"Retrieve Message Index for Partition ", "FTPACCT;part3;\r\n" + fetch("msgindex", "msgindexP 3.dat"),
     [](CommandRun& r) { r.commands.GetPartitonInfo(r.site, " 3", r.status); }},
    {"Get QVR+/RDN System Information", fetch("sysinfo", "sysinfo.dat"),
     [](CommandRun& r) { r.commands.GetFirmwareStructure(r.site, r.firmware, r.status); }},
    {"Send Firmware File", send("firmware", "firmware.dat", "5"),
     [](CommandRun& r) { r.commands.SendFirmware(r.site, "S:\\given", r.status); }},
    {"Send Canned Messages", send("prompts", "canned.dat", "5"),
     [](CommandRun& r) { r.commands.SendCannedMessages(r.site, "S:\\given", r.status); }},
};

TEST(SystemCommands, WriteTheirJobsToTheByte) {
  for (const Case& each : kCases) {
    SCOPED_TRACE(each.operation);
    CommandRun run;
    each.call(run);
    const std::string name = each.operation;
    const std::string lines = name == "Launch Telnet Session"
                                  ? "TELNETSESSION;\r\nTELNETDISCONNECT;\r\n"
                                  : "FTPCONNECT;\r\n" + each.lines + "FTPDISCONNECT;\r\n";
    EXPECT_THAT(run.scheduler.scripts,
                ElementsAre("SITENAME=USA_Office;\r\nSITEID=101;\r\nQVRID=9;\r\nDESCRIPTION=" + name +
                            ";\r\nSTARTDATE=46341.5070023148;\r\nSTOPDATE=46341.5070023148;\r\n"
                            "INTERVAL=;\r\nPERIOD=;\r\nRAS=Line#555;\r\nFTPIPADDRESS=10.0.0.6;\r\n"
                            "FTPUSER=admin;\r\nFTPPASSWORD=secret;\r\n" +
                            lines));
    EXPECT_EQ(run.scheduler.index, "46341.5070023148;15/11/2026 12:10:05^" + name +
                                       "^USA_Office^101^46341.5070023148^^^9^;" + kJob + kName + ".scr;\r\n");
  }
}

TEST(SystemCommands, EndAsTheSchedulerSays) {
  struct Ending {
    const char* list;
    const char* status;
    const char* requests;  // "C" stands for the one that shows the session
  };
  for (const Case& each : kCases) {
    for (const Ending& ending :
         {Ending{"completed.sch", "Completed", "J1 J5 J2 J6"}, Ending{"error.sch", "Error", "J1 J5 J2 J6"},
          Ending{"cancelled.sch", "Cancelled", "J1 J5 J2 J6"}, Ending{"", "Cancelled", "J1 J5 C J2"}}) {
      SCOPED_TRACE(std::string(each.operation) + " " + ending.list);
      CommandRun run;
      run.scheduler.result_file = ending.list;
      const bool by_user = *ending.list == '\0';
      if (by_user) run.cancel_when([&run] { return run.clock.slept > std::chrono::seconds(3); });
      each.call(run);
      std::string requests = ending.requests;
      if (by_user) {
        const bool telnet = each.operation == std::string("Launch Telnet Session");
        requests.replace(requests.find('C'), 1, telnet ? "J9" : "J5");
      }
      const std::string status = ending.status;
      EXPECT_EQ(run.status, status);
      EXPECT_EQ(run.requests(), requests);
      const bool removed = status == "Completed" && !each.keeps_folder;
      EXPECT_EQ(run.left_behind(), removed ? std::vector<std::string>{} : std::vector{kName});
      EXPECT_EQ(run.pending_lines(), 0U);
      EXPECT_TRUE(run.active_throughout);
      EXPECT_FALSE(run.session.run.SystemCommandActive);
      EXPECT_EQ(run.view.caption, "OK");
      const std::string name = each.operation;
      EXPECT_EQ(run.view.infos.back(), by_user ? name : name + " " + status);
    }
  }
}

TEST(SystemCommands, GiveWhatTheDeviceSent) {
  CommandRun run;
  run.commands.GetLogFile(run.site, run.log, run.status);
  EXPECT_EQ(run.log, kJob + "log");
  EXPECT_EQ(run.files.content[run.log], "the log");
  run.commands.GetDateAndTime(run.site, run.device_clock, run.status);
  EXPECT_EQ(run.device_clock, kClock);
  EXPECT_EQ(run.session.job.Name, "Nov1526121006000");  // the log's folder has the earlier second
  run.commands.SetDateAndTime(run.site, kClock, run.status);
  EXPECT_THAT(run.scheduler.uploads, ElementsAre(kClockBytes));
  run.commands.GetPartitonInfo(run.site, " 3", run.status);
  EXPECT_THAT(run.session.received.PartitionTimes,
              ElementsAre(base::TimeRecord{"8", "0"}, base::TimeRecord{"16", "0"}));
  run.commands.GetFirmwareStructure(run.site, run.firmware, run.status);
  EXPECT_EQ(run.firmware[0], 0x01010101U);
  EXPECT_EQ(run.firmware[17], 0x00010101U);
  const std::string log = run.folders.GetLogsFolder() + run.session.job.Name + ".log";
  EXPECT_THAT(run.files.content[log], ::testing::HasSubstr("holds 71 of 72 bytes"));
  EXPECT_THAT(run.left_behind(), ElementsAre(kName));
}

TEST(SystemCommands, LeaveNothingWhenTheyCannotBegin) {
  struct Fault {
    const char* what;
    void (*prepare)(CommandRun&);
    const char* text;
    const char* status;
  };
  for (const Fault& each : {
           Fault{"no file", [](CommandRun& r) { r.files.content.erase("S:\\given"); },
                 "Error_Handler: SendFirmware\r\nFile not found", "Error"},
           Fault{"name", [](CommandRun& r) { r.site.site_name = "A;B"; },
                 "Error_Handler: SendFirmware\r\nJob not listed", "Error"},
           Fault{"no scheduler", [](CommandRun& r) { r.scheduler.window.reset(); }, "SCHEDULER not found!",
                 "Cancelled"},
       }) {
    SCOPED_TRACE(each.what);
    CommandRun run;
    each.prepare(run);
    run.commands.SendFirmware(run.site, "S:\\given", run.status);
    EXPECT_EQ(run.status, each.status);
    EXPECT_EQ(run.ui.texts().front(), each.text);
    EXPECT_EQ(run.requests(), "");
    EXPECT_THAT(run.left_behind(), IsEmpty());
    EXPECT_FALSE(run.session.run.SystemCommandActive);
  }
}

// The clock is set under the name of another command.
TEST(SystemCommands, ReportUnderTheirNames) {
  CommandRun run;
  run.files.before = [](std::string_view, const std::string& path) {
    if (path.ends_with("time")) throw base::Fault(base::kDiskFull, path);
  };
  run.commands.SetDateAndTime(run.site, kClock, run.status);
  run.files.before = nullptr;
  run.scheduler.sends = [](const std::string&) { return std::nullopt; };
  run.commands.GetDateAndTime(run.site, run.device_clock, run.status);
  EXPECT_THAT(run.ui.texts(), ElementsAre("Error_Handler: GetFirmwareStructure\r\nDisk full",
                                          "Error_Handler: GetDateAndTime\r\nFile not found"));
  EXPECT_EQ(run.status, "Error");
  EXPECT_EQ(run.requests(), "J1 J5 J2 J6");
  EXPECT_THAT(run.left_behind(), IsEmpty());
}

}  // namespace
}  // namespace qvrcom::session
