#include <gmock/gmock.h>

#include "base/fault.h"
#include "session/business_rules.h"
#include "session/memory_suite.h"
#include "session/system_commands.h"

namespace qvrcom::session {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Procedure {
  const char* name;
  void (*call)(BusinessRules&);
};

// Hosts tell procedures apart by the name in the box, and the two groups by its icon.
const Procedure kPlain[] = {
    {"Create_File", [](BusinessRules& r) { r.Create_File("x.sch"); }},
    {"Create_Folders", [](BusinessRules& r) { r.Create_Folders(); }},
    {"ProperMsgNo", [](BusinessRules& r) { r.ProperMsgNo("x"); }},
    {"ProperPartID", [](BusinessRules& r) { r.ProperPartID("40000"); }},
    {"Create_Dir", [](BusinessRules& r) { r.Create_Dir(); }},
    {"Write_Script_Header", [](BusinessRules& r) { r.Write_Script_Header(protocol::ScriptHeader{}); }},
    {"Write_Script", [](BusinessRules& r) { r.Write_Script("x"); }},
    {"Write_Script_End", [](BusinessRules& r) { r.Write_Script_End(); }},
    {"Write_Index", [](BusinessRules& r) { r.Write_Index("", "", "", "", "", ""); }},
    {"Sort_File", [](BusinessRules& r) { r.Sort_File("index.sch"); }},
    {"ReWrite_File", [](BusinessRules& r) { r.ReWrite_File("index.sch", "x"); }},
    {"Validate_Index_File", [](BusinessRules& r) { r.Validate_Index_File(); }},
    {"Get_ControlCardType", [](BusinessRules& r) { r.Get_ControlCardType(); }},
    {"Get_Current_User", [](BusinessRules& r) { r.Get_Current_User(); }},
    {"Get_Current_Config", [](BusinessRules& r) { r.Get_Current_Config(); }},
    {"Update_SiteID_in_SessionQVR", [](BusinessRules& r) { r.Update_SiteID_in_SessionQVR(); }},
    {"QVRSettings_MachineTypeID", [](BusinessRules& r) { r.QVRSettings_MachineTypeID(); }},
    {"Version_Compactibility", [](BusinessRules& r) { r.Version_Compactibility("6.61", "two"); }},
    {"Process_MsgIndex", [](BusinessRules& r) { r.Process_MsgIndex("S:\\x"); }},
    {"Copy_Items_From_Scheduler_to_BeProcessed",
     [](BusinessRules& r) { r.Copy_Items_From_Scheduler_to_BeProcessed(); }},
    {"Process_CompletedSch_File", [](BusinessRules& r) { r.Process_CompletedSch_File(); }},
    {"Process_Script", [](BusinessRules& r) { r.Process_Script("x.scr"); }},
    {"Parse_Script", [](BusinessRules& r) { r.Parse_Script(); }},
    {"LocalFile", [](BusinessRules& r) { r.LocalFile("x"); }},
    {"Remove_Folder", [](BusinessRules& r) { r.Remove_Folder(); }},
};
const Procedure kOfImages[] = {
    {"Next_AutoIncrement_FileName", [](BusinessRules& r) { r.Next_AutoIncrement_FileName("E:\\", "x"); }},
    {"Process_PartStats_binary", [](BusinessRules& r) { r.Process_PartStats_binary("1", "3", "l", "n"); }},
    {"Process_Write_CSV", [](BusinessRules& r) { r.Process_Write_CSV("1", "3"); }},
    {"Write_Database", [](BusinessRules& r) { r.Write_Database("getdBaseP"); }},
    {"Process_System_binary", [](BusinessRules& r) { r.Process_System_binary("1", "S:\\x"); }},
    {"Process_Partition_binary", [](BusinessRules& r) { r.Process_Partition_binary("1", "3", "S:\\x"); }},
    {"ExistPartID", [](BusinessRules& r) { r.ExistPartID("3"); }},
    {"PARTITION_INFO", [](BusinessRules& r) { r.PARTITION_INFO("S:\\x"); }},
    {"Struct_Time", [](BusinessRules& r) { r.Struct_Time("S:\\x"); }},
    {"Struct_Firmware", [](BusinessRules& r) { r.Struct_Firmware("S:\\x"); }},
    {"Get_Node_List_DIR", [](BusinessRules& r) { r.Get_Node_List(base::NodeType::kDir, "1", "3"); }},
    {"Head_Info", [](BusinessRules& r) { r.Head_Info("12"); }},
};

// Disk, database and components all fail.
TEST(BusinessRules, ReportUnderTheProceduresNames) {
  const auto try_all = [](std::span<const Procedure> procedures, platform::Icon icon) {
    for (const Procedure& each : procedures) {
      session::MemorySuite suite;
      suite.session.job.JobId = "x;y;S:\\Nov1526121005000\\Nov1526121005000.scr;";
      suite.session.job.SessionStart = suite.clock.time;
      suite.files.content["S:\\completed.sch"] = "x\r\n";
      suite.files.folders.erase("C:\\Docs\\Corbelin\\QVRCOM+\\Msgs");
      suite.files.before = [](auto, const std::string& path) { throw base::Fault(base::kDiskFull, path); };
      suite.engine.refusal = "Database is locked";
      suite.components.missing = true;
      BusinessRules rules(suite.parts().rules);
      each.call(rules);
      ASSERT_EQ(suite.ui.messages.size(), 1U) << each.name;
      EXPECT_THAT(suite.ui.messages[0].text,
                  testing::StartsWith("Error_Handler: " + std::string(each.name) + "\r\n"));
      EXPECT_EQ(suite.ui.messages[0].title, "QVRCOM+");
      EXPECT_EQ(suite.ui.messages[0].icon, icon) << each.name;
    }
  };
  try_all(kPlain, platform::Icon::kNone);
  try_all(kOfImages, platform::Icon::kError);
}

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
  CommandSite site{"USA_Office", "101", "9",        {}, 1,  "Line", "555",
                   " 10.0.0.6 ", "",    " secret ", {}, {}, {},     {}};
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
    const std::string lines =
        name == "Launch Telnet Session" ? "TELNETSESSION;\r\nTELNETDISCONNECT;\r\n" : transfer(each.lines);
    EXPECT_THAT(run.scheduler.scripts,
                ElementsAre(script_head(name, "9", "RAS=Line#555;\r\nFTPIPADDRESS=10.0.0.6") + lines));
    EXPECT_EQ(run.scheduler.index, index_line(name, kName, "9"));
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
  EXPECT_THAT(run.files.content[log], testing::HasSubstr("holds 71 of 72 bytes"));
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
