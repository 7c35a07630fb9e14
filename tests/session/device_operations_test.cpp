// Old statistics of one and of all partitions, SAME log and device view, as whole runs of the dialog.

#include <gmock/gmock.h>

#include "session/memory_suite.h"

namespace qvrcom::session {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string kJob = "S:\\Nov1526121005001\\";

std::string fetch(const std::string& remote, const std::string& local) {
  return "FTPGET;REMOTEFILE=" + remote + ";LOCALFILE=" + local + ";SIZE=20000;\r\n";
}

// A partition's lines in a script of the older form.
std::string block(const std::string& partition, bool clears) {
  return "FTPACCT;part" + partition + ";\r\n" + fetch("dbase", kJob + "getdBaseP" + partition + ".dat") +
         fetch("linestat", kJob + "linestatP" + partition + ".dat") +
         fetch("nodestat", kJob + "nodestatP" + partition + ".dat") +
         (clears ? "FTPDELETE;linestat;\r\nFTPDELETE;nodestat;\r\n" : "");
}

std::string sent_to(const DialogRun& run) {
  return run.scheduler.scripts.empty() ? "" : run.scheduler.scripts[0];
}

TEST(OldStatistics, AreFetchedAndDecoded) {
  for (const bool clears : {false, true}) {
    DialogRun run;
    const std::string name = clears ? operation::kRetrieveResetStatistics : operation::kRetrieveStatistics;
    run.session.run.CurrentOperation = name;
    run.session.run.PartitionID = " 3 ";
    run.session.received.ReceivedPartitions = {"12", "", ""};
    run.session.received.PartitionCount = 2;
    run.session.site.SiteConnections[0].fields[base::SiteConnection::kFirmwareVersion] = "5.ca";
    run.go();
    EXPECT_EQ(sent_to(run), script_head(name + " 3 ") +
                                transfer(fetch("dbase", kJob + "getdBaseSys.dat") + block("3", clears)));
    EXPECT_EQ(run.scheduler.index, index_line(name + " 3 ", "Nov1526121005001"));
    EXPECT_THAT(run.components.calls(),
                ElementsAre("Update_SiteID 7", "DecodeSystemImage 1|" + kJob + "getdBaseSys.dat",
                            "Get_Partition_Rows 1|3", "DecodePartitionImage 1|3|7|" + kJob + "getdBaseP3.dat",
                            "DecodeLineStats 1| 3 |" + kJob + "linestatP3.dat",
                            "DecodeNodeStats 1| 3 |" + kJob + "nodestatP3.dat", "WriteStatsCsv 1| 3 "));
    EXPECT_THAT(run.session.received.ReceivedPartitions, ElementsAre("3", ""));
    EXPECT_EQ(run.session.run.SessionConfigID, "1");
  }
}

// Names of the files that were brought to safety.
std::vector<std::string> rescued(const DialogRun& run) {
  const std::string folder = run.folders.GetRescuedFolder() + "Nov1526121005001";
  return run.files.folder_exists(folder) ? run.files.list(folder) : std::vector<std::string>{};
}

// Partition 3 is not in the configuration, 5 is missing on the device, 9 has a link for a file.
void leave_gaps(DialogRun& run) {
  run.components.answers["Get_Partition_Rows 1|3"] = "none";
  run.scheduler.sends = [](const std::string& local) -> std::optional<std::string> {
    return local.ends_with("P5.dat") ? std::nullopt : std::optional<std::string>("x");
  };
  run.files.links.insert(kJob + "nodestatP9.dat");  // leads elsewhere
}

TEST(AllPartitions, AreRetrievedAndResetInOneJob) {
  DialogRun run;
  run.session.run.CurrentOperation = operation::kRetrieveResetAllStatistics;
  leave_gaps(run);
  run.go_hosted();
  std::string lines = fetch("dbase", kJob + "getdBaseSys.dat");
  for (int number = 1; number <= 64; ++number)
    lines += block(std::to_string(number), true);
  EXPECT_EQ(sent_to(run), script_head(operation::kRetrieveResetAllStatistics) + transfer(lines));
  EXPECT_EQ(run.scheduler.index, index_line(operation::kRetrieveResetAllStatistics, "Nov1526121005001"));
  EXPECT_EQ(run.result.partition_files.size(), 61U);
  EXPECT_EQ(run.result.partition_files.back().file, "Stats64.csv");
  EXPECT_EQ(run.requests(), "J1 J5 J6 J2");
  EXPECT_EQ(run.view.infos.back(), "Completed Retrieve Reset Statistics All Partitions");
  EXPECT_THAT(run.left_behind(), IsEmpty());
  EXPECT_EQ(run.view.caption, "OK");
  EXPECT_EQ(
      run.result.missing,
      "Not fetched: partition 5, 9. Fetched but not in the configuration, so not decoded: partition 3.");
  EXPECT_THAT(rescued(run), ElementsAre("getdBaseP3.dat", "getdBaseP9.dat", "linestatP3.dat",
                                        "linestatP9.dat", "nodestatP3.dat"));
}

// With a report: 2 is no partition of the device, 5 failed, 7 kept one of its files, 64 has a file that is
// none.
TEST(AllPartitions, SayWhatTheReportTells) {
  DialogRun run;
  run.session.run.CurrentOperation = operation::kRetrieveResetAllStatistics;
  run.components.answers["Get_Partition_Rows 1|2"] = "none";
  run.components.answers["DecodeLineStats 1|64"] = "no file of this suite";
  run.scheduler.sends = [](const std::string& local) {
    return local.ends_with("P2.dat") || local.ends_with("P5.dat") ? std::nullopt
                                                                  : std::optional<std::string>("x");
  };
  run.scheduler.report = "FAILED;part2;;;530 No such account;\r\nFAILED;part5;;;426 Cut;\r\n";
  for (int number = 1; number <= 64; ++number) {
    const std::string account = "part" + std::to_string(number);
    for (const char* file : {"linestat", "nodestat"}) {
      if (number == 2 || number == 5 || (number == 7 && file[0] == 'n')) continue;
      run.scheduler.report +=
          "DELETING;" + account + ";" + file + ";;;\r\nDELETED;" + account + ";" + file + ";;;\r\n";
    }
  }
  run.scheduler.report += "FAILED;part7;nodestat;;550 Locked;\r\n";
  run.go_hosted();
  EXPECT_EQ(run.result.partition_files.size(), 62U);
  EXPECT_EQ(run.result.missing,
            "Not fetched: partition 5 (426 Cut). Fetched but not reset: partition 7 (550 Locked). Fetched, "
            "but: partition 64 (has no line statistics, which could not be read).");
  EXPECT_THAT(rescued(run), ElementsAre("getdBaseP64.dat", "linestatP64.dat", "nodestatP64.dat"));
  EXPECT_THAT(run.left_behind(), IsEmpty());
}

// What an earlier configuration says of partitions counts for nothing.
TEST(AllPartitions, AreAllNamedWithoutTheDevicesConfiguration) {
  DialogRun run;
  run.session.run.CurrentOperation = operation::kRetrieveResetAllStatistics;
  run.components.answers["DecodeSystemImage"] = "is damaged";
  run.components.answers["Get_Partition_Rows"] = "none";
  run.scheduler.sends = [](const std::string& local) {
    return local.ends_with("P2.dat") ? std::nullopt : std::optional<std::string>("x");
  };
  run.scheduler.report = "FAILED;part2;;;530 Not now;\r\n";
  run.go_hosted();
  EXPECT_EQ(run.result.partition_files.size(), 63U);
  EXPECT_THAT(run.result.missing, testing::StartsWith("Not fetched: partition 2 (530 Not now). "));
}

// A program that was killed after the first CSV file does not write it again.
TEST(AllPartitions, AreNotTakenTwice) {
  DialogRun run;
  run.session.run.CurrentOperation = operation::kRetrieveResetAllStatistics;
  run.scheduler.report = "ENDED;;;;completed;\r\nTAKEN;part1;;;C:\\Stats1.csv;\r\n";
  const std::string next = run.folders.GetStatsFolder("") + "Stats1.csv";
  run.components.usual = [&, usual = run.components.usual](auto operation, auto arguments) {
    if (operation == "WriteStatsCsv") {
      EXPECT_THAT(run.files.content[run.session.job.Folder + "\\" + run.session.job.Name + ".rpt"],
                  ::testing::EndsWith("TAKING;part" + arguments[1] + ";;;" + next + ";\r\n"));
    }
    return usual(operation, arguments);
  };
  run.go_hosted();
  ASSERT_EQ(run.result.partition_files.size(), 64U);
  EXPECT_EQ(run.result.partition_files[0].file, "C:\\Stats1.csv");
  EXPECT_THAT(run.components.calls(), ::testing::Not(::testing::Contains("WriteStatsCsv 1|1")));
  EXPECT_THAT(run.components.calls(), ::testing::Contains("WriteStatsCsv 1|2"));
}

TEST(Statistics, AreMadeAgainOnlyWhenTheReportCannotTellOfThem) {
  DialogRun run;
  run.session.run.CurrentOperation = operation::kRetrieveStatistics;
  run.scheduler.report = "ENDED;;;;completed;\r\n";
  run.files.before = [](std::string_view operation, const std::string& path) {
    if (operation == "append" && path.ends_with(".rpt")) throw base::Fault(base::kDiskFull, path);
  };
  run.go();
  EXPECT_EQ(run.session.run.StatsResultFile, "");
  EXPECT_THAT(run.files.list(run.folders.GetStatsFolder("")), IsEmpty());
  EXPECT_THAT(run.ui.messages.at(0).detail, HasSubstr("\"qvrcomctl jobs process Nov1526121005001\""));

  DialogRun killed;  // between the CSV and the report's line about it
  const std::string stats = killed.folders.GetStatsFolder("");
  killed.scheduler.report = "ENDED;;;;completed;\r\nTAKING;part3;;;" + stats +
                            "Stats4.csv;\r\nTAKING;part3;;;" + stats + "Stats5.csv;\r\n";
  killed.files.content[stats + "Stats4.csv"] = "another job's";
  killed.files.content[stats + "Stats5.csv"] =
      "SiteName,USA_Office\r\nUserSiteID,101\r\nLine,Calls\r\n1,2\r\n";
  killed.go();
  EXPECT_EQ(killed.session.run.StatsResultFile, stats + "Stats5.csv");
  EXPECT_THAT(killed.files.list(stats), ::testing::UnorderedElementsAre("Stats4.csv", "Stats5.csv"));
}

// A job that ended badly after the device was told to delete: what had arrived is kept.
TEST(Rescue, KeepsWhatTheDeviceHasNoLonger) {
  const std::string deleting = "FETCHED;part3;x;x;;\r\nDELETING;part3;linestat;;;\r\n";
  const struct {
    const char *firmware, *list;
    std::string report;
    std::vector<std::string> names;
  } cases[] = {
      {"6.62", "error.sch", deleting, {"AllStatsP3.csv", "StatisticsP3.csv"}},
      {"6.62", "cancelled.sch", deleting, {"AllStatsP3.csv", "StatisticsP3.csv"}},
      {"5.ca",
       "error.sch",
       deleting,
       {"getdBaseP3.dat", "getdBaseSys.dat", "linestatP3.dat", "nodestatP3.dat"}},
      {"6.62", "error.sch", "FETCHED;part3;x;x;;\r\n", {}},
      {"6.62", "completed.sch", deleting, {}},
      {"6.62", "error.sch", deleting + "TAKEN;part3;;;C:\\Stats1.csv;\r\n", {}},
  };
  for (const auto& each : cases) {
    DialogRun run;
    run.session.run.CurrentOperation = operation::kRetrieveResetStatistics;
    run.session.site.SiteConnections[0].fields[base::SiteConnection::kFirmwareVersion] = each.firmware;
    run.scheduler.result_file = each.list;
    run.scheduler.report = each.report;
    run.components.answers["DecodeNodeStats"] = "not whole";  // the other half is worth a CSV
    run.go();
    EXPECT_EQ(run.components.calls().back().starts_with("WriteStatsCsvTo 1|3|"), each.names.size() == 4);
    EXPECT_EQ(rescued(run), each.names) << each.firmware << each.list << each.report;
    EXPECT_EQ(run.ui.texts().size(),
              (each.names.empty() ? 0U : 1U) + (each.list[0] == 'c' && each.list[1] == 'o' ? 0U : 1U));
    EXPECT_THAT(run.left_behind(), IsEmpty());
    EXPECT_EQ(run.pending_lines(), 0U);
    EXPECT_EQ(run.session.run.StatsResultFile.empty(), each.list != std::string("completed.sch"));
  }
}

// Nobody knows what a job has deleted whose script cannot be read.
TEST(Rescue, CopiesEveryFileOfAJobWithoutItsScript) {
  DialogRun run;
  run.session.run.CurrentOperation = operation::kRetrieveResetStatistics;
  run.scheduler.result_file = "error.sch";
  run.scheduler.report = "DELETING;part3;linestat;;;\r\n";
  run.on_event = [&] {
    const auto script = run.files.content.find(kJob + "Nov1526121005001.scr");
    if (!run.scheduler.scripts.empty() && script != run.files.content.end()) script->second = "damaged";
  };
  run.go();
  EXPECT_THAT(rescued(run), ElementsAre("AllStatsP3.csv", "Nov1526121005001.rpt"));
  EXPECT_THAT(run.left_behind(), IsEmpty());
}

TEST(Rescue, KeepsWhatAnEarlierOneHasLeft) {
  DialogRun run;
  const std::string folder = run.folders.GetRescuedFolder() + "Nov1526121005001";
  run.files.make_folders(folder);
  run.files.content[folder + "\\AllStatsP3.csv"] = "Line,Calls\r\n1,2\r\n";  // what comes again
  run.files.content[folder + "\\StatisticsP3.csv"] = "other";
  run.session.run.CurrentOperation = operation::kRetrieveResetStatistics;
  run.scheduler.result_file = "error.sch";
  run.scheduler.report = "FETCHED;part3;x;x;;\r\nDELETING;part3;linestat;;;\r\n";
  run.go();
  EXPECT_THAT(rescued(run), ElementsAre("AllStatsP3.csv", "StatisticsP3 (2).csv", "StatisticsP3.csv"));
  EXPECT_EQ(run.files.content[folder + "\\StatisticsP3.csv"], "other");
}

TEST(Rescue, ThatFailsLeavesTheJobWhereItIs) {
  DialogRun run;
  run.session.run.CurrentOperation = operation::kRetrieveResetStatistics;
  run.scheduler.result_file = "error.sch";
  run.scheduler.report = "DELETING;part3;linestat;;;\r\n";
  run.files.before = [](std::string_view operation, const std::string& path) {
    if (operation == "copy") throw base::Fault(base::kDiskFull, path);
  };
  run.go();
  EXPECT_THAT(run.left_behind(), ElementsAre("Nov1526121005001"));
  EXPECT_EQ(run.pending_lines(), 1U);
  EXPECT_THAT(run.files.content[kJob + "Nov1526121005001.scr"], HasSubstr("\r\nFTPPASSWORD=;\r\n"));
}

// The activation itself only prepares.
TEST(AllPartitions, AreTheHostsToStart) {
  DialogRun run;
  run.session.run.CurrentOperation = operation::kRetrieveResetAllStatistics;
  run.go();
  EXPECT_THAT(run.view.infos, IsEmpty());
  EXPECT_EQ(run.view.caption, "Cancel");
}

const std::string kLogs = "C:\\Docs\\Corbelin\\QVRCOM+\\SAMELogs\\";

TEST(SameLog, IsFiledAsItCame) {
  const std::pair<std::string, const char*> cases[] = {{"C:\\Data\\Scheduler\\", "Nov1526121005001same.log"},
                                                       {"S:\\", "2026-11-15_12-10-5same.log"}};
  for (const auto& [scheduler, name] : cases) {
    DialogRun run;
    run.files.make_folders(scheduler);
    run.session.run.SchedulerFolder = run.scheduler.folder = scheduler;
    run.session.run.CurrentOperation = operation::kRetrieveSameLog;
    const std::string bytes("EAS\0\xFF\nend", 9);
    run.scheduler.sends = [&](const std::string&) { return bytes; };
    run.go();
    EXPECT_EQ(run.result.same_log, kLogs + name);
    EXPECT_THAT(run.scheduler.index, HasSubstr("^Retrieve SAME Log^USA_Office^101^"));
    EXPECT_EQ(run.files.content[kLogs + name], "SiteName,USA_Office\r\nUserSiteID,101\r\n" + bytes);
    EXPECT_THAT(run.view.infos, ElementsAre("Retrieve SAME Log", "Creating Script", "Retrieving SAME Log",
                                            "Processing Data ...", "Retrieve SAME Log Completed"));
    const std::string job = scheduler + "Nov1526121005001\\";
    EXPECT_EQ(sent_to(run), script_head("Retrieve SAME Log") + transfer(fetch("same.log", job + "same.log")));
    EXPECT_EQ(run.requests(), "J1 J5 J6 J2");
    EXPECT_FALSE(run.files.folder_exists(job));
  }
}

TEST(DeviceView, ListsTheMessagesOfAPartition) {
  DialogRun run;
  run.add_site("Depot", "102", "8", "0");
  run.session.run.CurrentOperation = operation::kViewDevice;
  run.session.run.PartitionID = " 3 ";
  run.session.run.ImmediateRun = false;
  run.scheduler.sends = [](const std::string&) {
    return std::string("\0\0\0\0\0\0\0\0\0\0\0\x0C\0\0\0\x50\0\0\x01\x01\0\0\0\x50", 24);
  };
  run.go();
  ASSERT_EQ(run.scheduler.scripts.size(), 2U);
  EXPECT_EQ(sent_to(run),
            script_head("Retrieve All Message Indexes") +
                transfer("FTPACCT;part3;\r\n" + fetch("msgindex", "S:\\Nov1526121005000\\msgindexP3.dat")));
  EXPECT_THAT(run.scheduler.scripts[1], HasSubstr("SITENAME=Depot;"));
  EXPECT_EQ(run.requests(), "J1 J2 J1 J2");
  EXPECT_THAT(run.session.received.MessageNumbers, ElementsAre("12", "257", ""));
  EXPECT_THAT(run.view.infos,
              ElementsAre("View QVR+/RDN", "Creating Script", "Communicating with QVR+/RDN",
                          "Processing Data ...", "View QVR+/RDN", "Creating Script",
                          "Communicating with QVR+/RDN", "Processing Data ...", "View QVR+/RDN Completed"));
  EXPECT_THAT(run.left_behind(), IsEmpty());
  EXPECT_EQ(run.view.caption, "OK");
}

TEST(DeviceView, IsCancelled) {
  DialogRun run;
  run.session.run.CurrentOperation = operation::kViewDevice;
  run.scheduler.result_file = "";
  run.cancel_when([&run] { return run.clock.slept > std::chrono::seconds(3); });
  run.go();
  EXPECT_EQ(run.requests(), "J1 J5 J2");
  EXPECT_EQ(run.view.infos.back(), "Communicating with QVR+/RDN");
  EXPECT_THAT(run.left_behind(), ElementsAre("Nov1526121005000"));
}

}  // namespace
}  // namespace qvrcom::session
