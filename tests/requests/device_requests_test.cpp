// What front ends ask of a device: each request as a whole run on memory parts.

#include <gmock/gmock.h>

#include "devicefiles/device_time.h"
#include "doubles/memory_lock.h"
#include "doubles/system_information_bytes.h"
#include "requests/device_requests.h"
#include "requests/job_upkeep.h"
#include "requests/late_results_request.h"
#include "requests/statistics_request.h"
#include "requests/system_request.h"
#include "session/memory_suite.h"

namespace qvrcom::requests {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

namespace operation = protocol::operation;

const base::LocalTime kMoment = base::local_time(2026, 11, 15, 9, 8, 7);

struct DeviceRequests : ::testing::Test, StatisticsDisplay {
  DeviceRequests() {
    run.session.site = {};
    run.engine.answer("SELECT FirmwareVersion FROM Site", {"FirmwareVersion"}, {{"5.ca"}});
    record.site_id = 7;
    record.name = "USA_Office";
    record.identifier = "101";
    record.lan = "10.0.0.5";
    store(record);
    run.files.content["C:\\given"] = "12345";
    run.scheduler.sends = [this](const std::string& local) -> std::optional<std::string> {
      const auto found = device.find(local.substr(local.rfind('\\') + 1));
      return found == device.end() ? "x" : found->second;
    };
  }
  void ShowStatistics(const std::string& file) override { shown.push_back(file); }

  // What the site book has from now on.
  void store(const sitebook::SiteRecord& site) {
    std::vector<std::string> columns{"SiteID"};
    std::vector<base::Field> values{std::to_string(site.site_id)};
    for (const sitebook::SiteColumn& column : sitebook::kSiteColumns) {
      columns.emplace_back(column.column);
      values.push_back(site.*column.member);
    }
    run.engine.answer("SELECT SiteID, User", columns, {values});
    std::rotate(run.engine.answers.begin(), run.engine.answers.end() - 1, run.engine.answers.end());
  }
  SystemAnswer command(const char* name) {
    store(record);
    order.site = record;
    order.operation = name;
    return SystemRequest(parts).run(order);
  }
  RequestResult statistics(const char* name = operation::kRetrieveStatistics) {
    store(record);
    return StatisticsRequest(parts, *this).run("NEW", {.site = record, .partition = 3, .operation = name});
  }

  session::DialogRun run;
  doubles::MemoryLock lock;
  session::SessionRun screen{run.parts(), run};
  std::string how_far;
  session::SessionGate gate{lock, run.ui, {}, [this] { return how_far; }};
  environment::DataBase database{run.connection};
  sitebook::SiteBook sites{run.connection};
  SessionRequestParts parts{run.parts().rules, database, gate, screen, run.link, sites};
  sitebook::SiteRecord record;
  SystemOrder order;
  std::map<std::string, std::string> device;  // by local name
  std::vector<std::string> shown;
};

TEST_F(DeviceRequests, CopyTheLogOutAndRemoveTheFolder) {
  device["log"] = std::string("a\0b", 3);
  order.save_log_as = "C:\\saved.log";
  run.files.make_folders("C:");
  const SystemAnswer answer = command(operation::kGetAndResetLog);
  EXPECT_EQ(answer.result, RequestResult::kDone);
  EXPECT_EQ(answer.status, "Completed");
  EXPECT_EQ(answer.log, device["log"]);
  EXPECT_EQ(run.files.content["C:\\saved.log"], device["log"]);
  EXPECT_THAT(run.left_behind(), IsEmpty());
  EXPECT_THAT(run.scheduler.scripts, ElementsAre(HasSubstr("QVRID=7;")));

  order.save_log_as = "C:\\no folder\\saved.log";  // the device has none any more: what came stays
  EXPECT_EQ(command(operation::kGetAndResetLog).result, RequestResult::kNotDone);
  EXPECT_THAT(run.ui.texts(), ElementsAre(StartsWith("What the device sent is kept in "),
                                          "Error_Handler: SystemRequest\r\nPath not found"));
  EXPECT_THAT(run.left_behind(), IsEmpty());
  EXPECT_EQ(run.files.content[run.folders.GetRescuedFolder() + run.session.job.Name + "\\log"],
            device["log"]);
}

TEST_F(DeviceRequests, KeepTheLogUntilItsReaderHasIt) {
  device["log"] = "a";
  order.keeps_log = true;
  for (const bool is_taken : {true, false}) {
    EXPECT_EQ(command(operation::kGetAndResetLog).log, "a");
    EXPECT_EQ(run.left_behind().size(), 1U);
    SystemRequest(parts).end_log(is_taken);
    EXPECT_THAT(run.left_behind(), IsEmpty());
  }
  EXPECT_EQ(run.files.content[run.folders.GetRescuedFolder() + run.session.job.Name + "\\log"], "a");
}

TEST_F(DeviceRequests, LeaveNothingOfACommandThatFailed) {
  device["log"] = "a";
  run.scheduler.report = "FETCHED;;log;log;;\r\nDELETING;;log;;;\r\nENDED;;;;error;\r\n";
  run.scheduler.result_file = "error.sch";
  EXPECT_EQ(command(operation::kGetAndResetLog).status, "Error");
  EXPECT_THAT(run.left_behind(), IsEmpty());
  EXPECT_EQ(run.files.content[run.folders.GetRescuedFolder() + run.session.job.Name + "\\log"], "a");
  EXPECT_EQ(run.ui.messages.size(), 2U);
}

TEST_F(DeviceRequests, ReadWhatTheDeviceTells) {
  device["time"] = devicefiles::write_device_time({kMoment});
  EXPECT_EQ(command(operation::kGetDateAndTime).clock, kMoment);
  device["sysinfo.dat"] = doubles::system_information_bytes("");
  EXPECT_EQ(command(operation::kGetSystemInformation).information.partitions, 8U);
  device["msgindexP3.dat"] = std::string("\0\0\xFA\0\0\x01\xF4\0", 8);
  order.partition = "3";
  EXPECT_THAT(command(operation::kRetrieveMessageIndex).partition_times,
              ElementsAre(base::TimeRecord{"8", "0"}, base::TimeRecord{"16", "0"}));
  order.clock = kMoment;
  EXPECT_EQ(command(operation::kSetDateAndTime).result, RequestResult::kDone);
  EXPECT_THAT(run.scheduler.uploads, ElementsAre(device["time"]));
  EXPECT_THAT(run.ui.texts(), IsEmpty());
}

TEST_F(DeviceRequests, TellWhatIsNoAnswer) {
  device["time"] = "short";
  device["msgindexP3.dat"] = "\xFF\xFF\xFF\xFF";
  order.partition = "3";
  const SystemAnswer clock = command(operation::kGetDateAndTime);
  EXPECT_EQ(clock.result, RequestResult::kNotDone);
  EXPECT_THAT(clock.shortfall, HasSubstr("5 of 8 bytes"));
  EXPECT_EQ(clock.record, std::string("short\0\0\0", 8));
  EXPECT_THAT(run.ui.texts(), ElementsAre(StartsWith("Error_Handler: SystemRequest\r\n")));
  run.ui.messages.clear();
  EXPECT_EQ(command(operation::kRetrieveMessageIndex).result, RequestResult::kNotDone);
  EXPECT_THAT(run.ui.texts(), ElementsAre("Error_Handler: PARTITION_INFO\r\nOverflow"));
  EXPECT_EQ(command("Get Lost").result, RequestResult::kNotDone);
}

TEST_F(DeviceRequests, RefuseBeforeAnythingIsSent) {
  struct Case {
    const char* what;
    void (*prepare)(DeviceRequests&);
    const char* text;
  };
  for (const Case& each :
       {Case{"no file", [](DeviceRequests& t) { t.order.file = "C:\\none"; },
             "No session is started: there is no file C:\\none."},
        Case{"empty", [](DeviceRequests& t) { t.run.files.content[t.order.file = "C:\\empty"] = ""; },
             "No session is started: the file C:\\empty is empty."},
        Case{"name", [](DeviceRequests& t) { t.record.name = "A;B"; },
             "No session is started for this site."},
        Case{"no address", [](DeviceRequests& t) { t.record.lan = ""; },
             "No session is started for this site: it has no LAN address."},
        Case{"card", [](DeviceRequests& t) { t.record.card_type = "OLD"; },
             "Haven't Implemented the communication to Old QVR"}}) {
    SCOPED_TRACE(each.what);
    run.ui.messages.clear();
    order.file = "C:\\given";
    each.prepare(*this);
    EXPECT_EQ(command(operation::kSendFirmware).result, RequestResult::kNotDone);
    EXPECT_THAT(run.ui.texts(), ElementsAre(StartsWith(each.text)));
    EXPECT_EQ(run.requests(), "");
    record.name = "USA_Office";
    record.lan = "10.0.0.5";
    record.method = record.card_type = "";
  }
  order.file = "C:\\empty";
  order.force = true;
  record.method = "1";  // an empty modem address stands for the usual one
  record.lan = "";
  EXPECT_EQ(command(operation::kSendFirmware).result, RequestResult::kDone);
  EXPECT_THAT(run.scheduler.scripts[0], HasSubstr("SIZE=0;"));
  EXPECT_THAT(run.scheduler.scripts[0], HasSubstr("FTPIPADDRESS=192.168.101.2;"));
}

TEST_F(DeviceRequests, TakeTheSiteAsTheBookHasItByThen) {
  sitebook::SiteRecord stored = record;
  stored.lan = "10.0.0.9";
  store(stored);
  device["same.log"] = "EAS";
  EXPECT_EQ(SameLogRequest(parts).run(record).result, RequestResult::kDone);
  EXPECT_THAT(run.scheduler.scripts, ElementsAre(HasSubstr("FTPIPADDRESS=10.0.0.9;")));
  run.channel.posts.clear();
  const std::string refusal = "No session is started: the site \"USA_Office - 101\" is ";
  stored.identifier = "102";
  store(stored);
  EXPECT_EQ(SameLogRequest(parts).run(record).result, RequestResult::kNotDone);
  stored.site_id = 8;
  store(stored);
  EXPECT_EQ(SameLogRequest(parts).run(record).result, RequestResult::kNotDone);
  EXPECT_THAT(run.ui.texts(), ElementsAre(refusal + "now \"USA_Office - 102\" in the site book.",
                                          refusal + "no longer in the site book."));
  EXPECT_EQ(run.requests(), "");
}

TEST_F(DeviceRequests, TellWhatTheSameLogAndTheMessagesAre) {
  device["same.log"] = "EAS";
  device["msgindexP3.dat"] = std::string("\0\0\0\0\0\0\0\0\0\0\0\x0C\0\0\0\x50", 16);
  const SameLogAnswer log = SameLogRequest(parts).run(record);
  EXPECT_EQ(log.result, RequestResult::kDone);
  EXPECT_EQ(run.files.content[log.file], "SiteName,USA_Office\r\nUserSiteID,101\r\nEAS");
  const ViewAnswer view = ViewRequest(parts).run(record, 3);
  EXPECT_EQ(view.result, RequestResult::kDone);
  EXPECT_THAT(view.messages, ElementsAre("12"));
  run.scheduler.result_file = "error.sch";  // nothing of the run before counts
  EXPECT_EQ(SameLogRequest(parts).run(record).file, "");
  EXPECT_THAT(ViewRequest(parts).run(record, 3).messages, IsEmpty());
}

TEST_F(DeviceRequests, TakeAllPartitionsOfOldFirmwareAlone) {
  const AllPartitionsAnswer answer = AllPartitionsRequest(parts).run(record);
  EXPECT_EQ(answer.result, RequestResult::kDone);
  ASSERT_EQ(answer.files.size(), 64U);
  EXPECT_EQ(answer.files[1], (session::PartitionFile{2, "Stats2.csv"}));

  run.engine.answers.clear();
  run.engine.answer("SELECT FirmwareVersion FROM Site", {"FirmwareVersion"}, {{"6.62"}});
  store(record);
  run.channel.posts.clear();
  EXPECT_EQ(AllPartitionsRequest(parts).run(record).result, RequestResult::kNotDone);
  EXPECT_EQ(run.requests(), "");
  EXPECT_THAT(run.ui.texts(), ElementsAre(StartsWith("No session is started: the site's firmware 6.62")));
  EXPECT_EQ(AllPartitionsRequest(parts).run(record, true).files.size(), 64U);
  run.engine.answers.clear();
  store(record);
  AllPartitionsRequest(parts).run(record);
  EXPECT_THAT(run.ui.texts().back(), HasSubstr("FW Version : 0\r\n"));
}

TEST_F(DeviceRequests, TellWhyStatisticsBroughtNothing) {
  EXPECT_EQ(statistics(), RequestResult::kDone);
  EXPECT_THAT(shown, ElementsAre("Stats3.csv"));
  run.components.answers["Get_Partition_Rows"] = "none";
  EXPECT_EQ(statistics(), RequestResult::kNotDone);
  EXPECT_EQ(shown.size(), 1U);
  ASSERT_EQ(run.ui.messages.size(), 1U);
  EXPECT_EQ(run.ui.messages[0].text, "The operation ended without a result.");
  EXPECT_THAT(run.ui.messages[0].detail, HasSubstr("Partition 3 is not in the configuration"));
  run.engine.answers.clear();
  run.engine.answer("SELECT FirmwareVersion FROM Site", {"FirmwareVersion"}, {{"6.62"}});
  device["AllStatsP3.csv"] = " ";
  EXPECT_EQ(statistics(), RequestResult::kNotDone);
  EXPECT_THAT(run.ui.messages.back().detail, HasSubstr("statistics file holds nothing"));
}

TEST_F(DeviceRequests, EndStatisticsAsTheSessionEnds) {
  EXPECT_EQ(statistics(operation::kResetStatistics), RequestResult::kDone);
  run.cancel_at(operation::kResetStatistics);  // before anything is written: nothing of the run before counts
  EXPECT_EQ(statistics(operation::kResetStatistics), RequestResult::kNotDone);
  run.on_event = nullptr;
  run.view = {};
  run.scheduler.result_file = "error.sch";
  EXPECT_EQ(statistics(operation::kResetStatistics), RequestResult::kNotDone);
  run.engine.answers.clear();
  run.engine.answer("SELECT FirmwareVersion FROM Site", {"FirmwareVersion"}, {{std::nullopt}});
  EXPECT_EQ(statistics(), RequestResult::kNotDone);
  EXPECT_EQ(run.session.site.FirmwareVersion, "0");
  EXPECT_THAT(shown, IsEmpty());
  EXPECT_FALSE(lock.held);
}

TEST_F(DeviceRequests, StoreTheFirmwareVersionThatTheDeviceTells) {
  device["sysinfo.dat"] = doubles::system_information_bytes("6.62");
  run.engine.answer("SELECT SiteID FROM Site", {"SiteID"}, {{"7"}});
  EXPECT_EQ(command(operation::kGetSystemInformation).result, RequestResult::kDone);
  const auto& stored = run.engine.statements.back();
  EXPECT_THAT(stored.sql, StartsWith("UPDATE Site SET FirmwareVersion = :FirmwareVersion"));
  EXPECT_EQ(stored.values[0].value, "7");
  EXPECT_EQ(stored.values[1].value, "6.62");
  EXPECT_THAT(run.ui.texts(),
              ElementsAre("The firmware version 6.62 is now stored at the site USA_Office - 101."));
  EXPECT_EQ(run.ui.messages[0].detail, "The site book had 5.ca.");
}

struct LateResults : DeviceRequests {
  // A run whose dialog was cancelled while the scheduler worked; the scheduler has gone since.
  std::string leave(const std::string& name, const char* list = "completed.sch") {
    run.view = {};
    run.scheduler.result_file = list;
    if (!run.scheduler.window) run.scheduler.open();
    run.channel.posts.clear();
    run.cancel_when([this] {
      run.scheduler.answers = false;
      return run.requests().ends_with("J5");
    });
    statistics(name.c_str());
    run.scheduler.window.reset();
    run.on_event = nullptr;
    run.ui.messages.clear();
    run.view = {};
    return run.session.job.Name;
  }
  LateResultsAnswer process() { return LateResultsRequest(parts, board).process(waiting().at(0)); }
  std::vector<jobs::BoardJob> waiting() { return LateResultsRequest(parts, board).waiting(); }

  jobs::SchedulerFiles scheduler_files{run.session.run, run.folders, run.files};
  jobs::JobBoard board{scheduler_files};
};

TEST_F(LateResults, BecomeWhatTheyWouldHaveBecome) {
  run.engine.answers.clear();
  run.engine.answer("SELECT FirmwareVersion FROM Site", {"FirmwareVersion"}, {{"6.62"}});
  run.engine.answer("File_Handling", {"DefaultPathname", "DefaultFilename", "AutoIncrements"},
                    {{std::nullopt, std::nullopt, ""}});
  device["AllStatsP3.csv"] = "Line,Calls";
  const std::string job = leave(operation::kRetrieveResetStatistics);
  run.files.content.erase("S:\\index.sch");
  EXPECT_EQ(LateResultsRequest(parts, board).notice(board.read()),
            "A finished job has not been processed: " + job + ".");
  run.session.site = {};
  run.session.run = {};
  run.session.run.SchedulerFolder = "S:\\";
  run.files.before = [](std::string_view operation, const std::string& path) {
    if (operation == "replace" && path.ends_with(".csv")) throw base::Fault(base::kDiskFull, path);
  };
  EXPECT_EQ(process().result, RequestResult::kNotDone);
  run.files.before = nullptr;
  run.ui.messages.clear();
  const LateResultsAnswer answer = process();
  EXPECT_EQ(answer.result, RequestResult::kDone);
  ASSERT_EQ(answer.files.size(), 1U);
  EXPECT_EQ(run.files.content[answer.files[0]], "SiteName,USA_Office\r\nUserSiteID,101\r\nLine,Calls");
  EXPECT_THAT(waiting(), IsEmpty());
  EXPECT_THAT(run.left_behind(), IsEmpty());
  EXPECT_THAT(run.programs.started, IsEmpty());
  EXPECT_THAT(run.ui.texts(), IsEmpty());
}

// No list holds the job any more; its report alone tells how it ended.
TEST_F(LateResults, OfAnErrorAreBroughtToSafety) {
  run.scheduler.report = "DELETING;part3;linestat;;;\r\nENDED;;;;error;\r\n";
  const std::string job = leave(operation::kRetrieveResetStatistics, "error.sch");
  for (const char* list : {"S:\\error.sch", "S:\\index.sch", "S:\\ErrorToProcess.sch"})
    run.files.content[list] = "";
  EXPECT_EQ(process().result, RequestResult::kNotDone);
  EXPECT_THAT(run.ui.texts(), ElementsAre("Communication error, see JobPilot for details",
                                          StartsWith("What the device sent is kept in ")));
  EXPECT_TRUE(run.files.file_exists(run.folders.GetRescuedFolder() + job + "\\linestatP3.dat"));
  EXPECT_THAT(waiting(), IsEmpty());
}

TEST_F(LateResults, AreRemovedWithoutALossAndKeepNoAccessCode) {
  record.access_code = "canary";
  run.scheduler.report = "DELETING;part3;linestat;;;\r\n";
  const std::string job = leave(operation::kRetrieveResetStatistics);
  const std::string script = "S:\\" + job + "\\" + job + ".scr";
  JobUpkeep upkeep(parts, board, run.machine, run.control);
  EXPECT_THAT(run.files.content[script], HasSubstr("FTPPASSWORD=canary;"));
  upkeep.forget_access_codes(board.read());
  EXPECT_THAT(run.files.content[script], HasSubstr("\r\nFTPPASSWORD=;\r\n"));

  lock.owner = "qvrcom (process 4711)";
  EXPECT_EQ(upkeep.remove(job).outcome, JobUpkeep::Removal::kNotDone);
  lock.owner.clear();
  run.files.content["S:\\" + job + "\\" + job + ".rpt"] += "TAKEN;part4;;;C:\\Stats1.csv;\r\n";
  run.files.content.erase("S:\\index.sch");
  EXPECT_EQ(upkeep.remove("Nov0000000000000").outcome, JobUpkeep::Removal::kUnknown);
  const JobUpkeep::Removal removal = upkeep.remove(job);
  EXPECT_EQ(removal.outcome, JobUpkeep::Removal::kRemoved);
  EXPECT_THAT(removal.results, ElementsAre("C:\\Stats1.csv"));
  EXPECT_THAT(removal.lists, ElementsAre("completed.sch"));
  EXPECT_EQ(upkeep.remove(job).outcome, JobUpkeep::Removal::kLinesDropped);
  EXPECT_EQ(run.pending_lines(), 0U);
  EXPECT_EQ(run.ui.messages.size(), 2U) << "a session of another program, and the rescue";
  EXPECT_TRUE(run.files.file_exists(run.folders.GetRescuedFolder() + job + "\\nodestatP3.dat"));
  EXPECT_FALSE(run.files.folder_exists("S:\\" + job));
}

TEST_F(LateResults, ThatStillWaitAreToldOfAndTakenOut) {
  record.access_code = "canary";
  JobUpkeep upkeep(parts, board, run.machine, run.control);
  const std::string waits = leave(operation::kResetStatistics, "");
  run.files.content["S:\\index.sch"] = run.session.job.JobId + "\r\n";
  EXPECT_EQ(upkeep.remove(waits).outcome, JobUpkeep::Removal::kInUse);
  EXPECT_THAT(run.programs.started, ElementsAre(HasSubstr("JobPilot"))) << "to take it out";
  ASSERT_EQ(upkeep.left_waiting(board.read()).size(), 1U);
  run.control.now.emplace().running_job = waits;
  EXPECT_THAT(upkeep.left_waiting(board.read()), IsEmpty());
  EXPECT_EQ(upkeep.remove(waits).outcome, JobUpkeep::Removal::kInUse);
  EXPECT_THAT(run.control.log, ElementsAre("stop " + waits, "stop " + waits)) << "what runs is not stopped";
  run.control.now.reset();
  lock.owner = "qvrcom (process 4711)";  // which waits for it
  EXPECT_THAT(upkeep.left_waiting(board.read()), IsEmpty());
  lock.owner.clear();
  const std::string waiting_script = "S:\\" + waits + "\\" + waits + ".scr";
  upkeep.forget_access_codes(board.read());
  const std::string script = run.files.content[waiting_script];
  EXPECT_THAT(script, HasSubstr("FTPPASSWORD=canary;"));
  const std::string report = "S:\\" + waits + "\\" + waits + ".rpt";
  EXPECT_THAT(upkeep.cut_off(board.read()), IsEmpty());
  run.files.content[report] = "QVRREPORT;1;\r\nDELETING;part4;linestat;;;\r\n";
  EXPECT_THAT(upkeep.left_waiting(board.read()), IsEmpty());
  EXPECT_EQ(upkeep.cut_off(board.read()).size(), 1U);
  upkeep.forget_access_codes(board.read());
  EXPECT_THAT(std::exchange(run.files.content[waiting_script], script), HasSubstr("FTPPASSWORD=;"));
  run.files.content.erase(report);
  run.files.content["S:\\index.sch"] = "torn" + run.session.job.JobId.substr(9) + "x\r\n";
  EXPECT_EQ(upkeep.remove(waits).outcome, JobUpkeep::Removal::kDoubtful);
  run.scheduler.open();  // another maker's
  upkeep.forget_access_codes(board.read());
  EXPECT_THAT(run.files.content[waiting_script], HasSubstr("FTPPASSWORD=canary;"));
  run.scheduler.window.reset();
  upkeep.forget_access_codes(board.read());
  EXPECT_THAT(run.files.content[waiting_script], HasSubstr("FTPPASSWORD=;"));
}

TEST_F(LateResults, CleaningTakesWhatNobodyWaitsFor) {
  const std::string logs = run.folders.GetLogsFolder();
  run.files.make_folders("S:\\Jan0124121005001");
  run.files.make_folders(logs);
  run.files.content["S:\\Jan0124121005001\\x"] = "";
  std::string& days = run.machine.settings[{"QVRCOM+", "Jobs", "LogDays"}];
  days = "0";
  EXPECT_FALSE(JobUpkeep(parts, board, run.machine, run.control).clean().done);
  EXPECT_THAT(run.ui.messages.back().text, HasSubstr("Invalid setting"));
  EXPECT_TRUE(run.files.folder_exists("S:\\Jan0124121005001"));
  run.ui.messages.clear();
  days = "10";
  for (const char* name : {"Nov0426121005001.log", "Nov0526121005001.log", "JobPilot.log"})
    run.files.content[logs + name] = "";
  JobUpkeep upkeep(parts, board, run.machine, run.control);
  run.control.now.emplace().running_job = "Jan0124121005001";  // a session that was left
  EXPECT_THAT(upkeep.clean().jobs, IsEmpty());
  run.control.now.reset();  // another maker's scheduler may still run the newer one
  run.files.make_folders("S:\\Nov1526120000001");
  run.files.content[logs + "Nov0426121005001.log"] = "";
  run.files.make_folders("S:\\Jan0124121005002\\in the way");
  const std::string waits = session::index_line("Retrieve", "Jan0124121005003");
  const std::string gone = session::index_line("Retrieve", "Jan0124121005004");
  run.files.make_folders("S:\\Jan0124121005003");
  const std::string again = session::index_line("Retrieve", "Jan0124121005005");  // another program's still
  run.files.content["S:\\reschedule.sch"] = again;
  run.files.content["S:\\completed.sch"] = waits + again + gone;
  run.files.content["S:\\CompletedToProcess.sch"] = gone;
  const JobUpkeep::Cleaning cleaning = upkeep.clean();
  EXPECT_TRUE(cleaning.done);
  ASSERT_EQ(cleaning.stuck.size(), 1U);
  EXPECT_EQ(cleaning.stuck[0].job, "Jan0124121005002");
  ASSERT_EQ(cleaning.lines.size(), 1U);
  EXPECT_EQ(cleaning.lines[0].job, "Jan0124121005004");
  EXPECT_EQ(run.files.content["S:\\CompletedToProcess.sch"], waits + again);
  EXPECT_EQ(run.files.content["S:\\completed.sch"], waits + again + gone) << "a scheduler's own";
  EXPECT_THAT(cleaning.waiting, ElementsAre("Jan0124121005003"));
  EXPECT_THAT(cleaning.jobs, ElementsAre("Jan0124121005001"));
  EXPECT_EQ(cleaning.logs, 1U);
  EXPECT_FALSE(run.files.file_exists(logs + "Nov0426121005001.log"));
  EXPECT_TRUE(run.files.file_exists(logs + "Nov0526121005001.log"));
  EXPECT_FALSE(run.files.folder_exists("S:\\Jan0124121005001"));
}

TEST_F(DeviceRequests, LeaveASessionOfAnotherProgramAlone) {
  lock.owner = "qvrcom (process 4711)";
  how_far = "Fetching log, 30 bytes";
  const auto before = run.files.content;
  EXPECT_EQ(statistics(), RequestResult::kBusy);
  EXPECT_EQ(run.files.content, before);
  EXPECT_THAT(run.ui.texts(),
              ElementsAre("Another communication session is running: qvrcom (process 4711)."));
  EXPECT_THAT(run.ui.messages.back().detail, StartsWith("It is here: Fetching log, 30 bytes. Wait "));
  session::SessionGate patient(lock, run.ui, [this](const std::string&) {
    lock.owner.clear();
    return true;
  });
  EXPECT_NE(patient.enter(), nullptr);
  EXPECT_EQ(run.ui.messages.size(), 1U);
}

TEST_F(DeviceRequests, ReportAFailureWithoutItsDescription) {
  run.engine.refusal = "Database is locked";
  EXPECT_EQ(statistics(), RequestResult::kNotDone);
  EXPECT_THAT(run.ui.texts(), ElementsAre("ERROR! RetrieveStatSingPartition : "));
  EXPECT_FALSE(lock.held);
}

}  // namespace
}  // namespace qvrcom::requests
