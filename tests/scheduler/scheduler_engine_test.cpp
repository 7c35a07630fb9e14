#include "scheduler/scheduler_engine.h"

#include <gmock/gmock.h>

#include <atomic>

#include "base/text.h"
#include "doubles/manual_clock.h"
#include "doubles/memory_channel.h"
#include "doubles/memory_files.h"
#include "jobs/job_log.h"
#include "protocol/index_line.h"
#include "protocol/script_grammar.h"
#include "scheduler/scripted_device.h"

namespace qvrcom::scheduler {
namespace {

using platform::StopOutcome;
using protocol::JobState;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const std::string kFolder = "\\data\\Scheduler\\";
const std::string kLogs = "\\data\\Logs\\";
const std::string kGet =
    "FTPGET;REMOTEFILE=allstats.csv;LOCALFILE=\\data\\Scheduler\\JobA\\Stats.csv;SIZE=20000;";

class SchedulerEngineTest : public testing::Test {
 protected:
  SchedulerEngineTest() {
    files_.make_folders("\\data\\Scheduler");
    header_.site_name = "Office";
    header_.ftp_address = "192.0.2.7:2121";
    header_.ftp_password = "secret";
    dialog_ = channel_.open_window("RESPONSE DIALOG", [](auto...) { return 0; });
    make_engine();
  }

  void make_engine(SchedulerSettings settings = {}) {
    engine_ = std::make_unique<SchedulerEngine>(EngineParts{files_,
                                                            clock_,
                                                            channel_,
                                                            {device_, device_, device_, files_},
                                                            kFolder,
                                                            kLogs,
                                                            std::move(settings),
                                                            [this] { woken_ = true; }});
  }

  static std::string line(const std::string& job, const std::string& start = "46341.5",
                          const std::string& interval = "") {
    return protocol::index_line_text({"46341.5", "15/11/2026 12:00:00", "Retrieve", "Office", "101", start,
                                      interval, "", "7", kFolder + job + "\\" + job + ".scr"});
  }

  void add_line(const std::string& text) { files_.content[kFolder + "index.sch"] += text + "\r\n"; }
  void add_script(const std::string& job, const std::vector<std::string>& body,
                  protocol::ScriptKind kind = protocol::ScriptKind::kTransfer) {
    files_.make_folders(kFolder + job);
    std::string text = protocol::header_text(header_, kind) + "\r\n" + base::with_line_ends(body);
    if (kind == protocol::ScriptKind::kTransfer) text += "FTPDISCONNECT;\r\n";
    files_.content[kFolder + job + "\\" + job + ".scr"] = text;
  }
  void add_job(const std::string& job, const std::vector<std::string>& body) {
    add_script(job, body);
    add_line(line(job));
  }

  template <class Condition>
  void tick_until(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition() && std::chrono::steady_clock::now() < end) {
      engine_->tick();
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ASSERT_TRUE(condition());
  }
  void submit() {
    engine_->request(1);
    tick_until([this] { return !woken_.exchange(false) && !engine_->running(); });
  }

  std::string file(const std::string& path) const {
    const auto found = files_.content.find(path);
    return found == files_.content.end() ? std::string{} : found->second;
  }
  std::string list(const std::string& name) const { return file(kFolder + name + ".sch"); }
  std::string log(const std::string& job) const { return file(kLogs + job + ".log"); }
  std::string reason(const std::string& job) const { return jobs::reason_of(files_, kLogs, job); }

  doubles::MemoryFiles files_;
  doubles::ManualClock clock_;
  doubles::MemoryChannel channel_;
  ScriptedDevice device_;
  std::atomic<bool> woken_{false};
  protocol::ScriptHeader header_;
  std::unique_ptr<platform::Window> dialog_;
  std::unique_ptr<SchedulerEngine> engine_;
};

TEST_F(SchedulerEngineTest, HoldsTheConversationOfAScript) {
  files_.make_folders(kFolder + "JobA");
  files_.content[kFolder + "JobA\\dbase.bin"] = "x";
  add_job("JobA", {"FTPACCT;part3;", kGet, "FTPDELETE;linestat;",
                   "FTPPUT;REMOTEFILE=dbase;LOCALFILE=\\data\\Scheduler\\JobA\\dbase.bin;SIZE=1;"});
  submit();
  EXPECT_THAT(device_.told(),
              ElementsAre("login admin:secret@192.0.2.7:2121", "account part3",
                          "get allstats.csv > \\data\\Scheduler\\JobA\\Stats.csv", "remove linestat",
                          "put \\data\\Scheduler\\JobA\\dbase.bin > dbase", "close"));
  EXPECT_EQ(list("completed"), line("JobA") + "\r\n");
  EXPECT_EQ(channel_.posts.back(),
            (doubles::MemoryChannel::Post{"RESPONSE DIALOG", "CBL_SCHEDULER_QVRCOM", 0, 0}));
  EXPECT_THAT(log("JobA"), HasSubstr("2026-11-15 12:10:05 Fetched allstats.csv, 1234 bytes.\r\n"));
  EXPECT_THAT(log("JobA"), Not(HasSubstr("secret")));
  EXPECT_EQ(reason("JobA"), "");
}

TEST_F(SchedulerEngineTest, AFailureIsListedWithItsReason) {
  device_.fails_at = "get";
  device_.reply = "The transfer\r\nwas \x01 cut \xFF short";
  add_job("JobA", {"FTPACCT;part3;", kGet, "FTPDELETE;linestat;"});
  submit();
  EXPECT_EQ(list("error"), line("JobA") + "\r\n");
  EXPECT_EQ(list("completed"), "");
  EXPECT_THAT(device_.told().back(), StartsWith("get"));
  EXPECT_EQ(
      reason("JobA"),
      "Trying to get allstats.csv > \\data\\Scheduler\\JobA\\Stats.csv: The transfer  was   cut ? short.");
}

TEST_F(SchedulerEngineTest, WhatMayHaveChangedTheDeviceIsNotRunAgain) {
  struct Row {
    std::string report;
    const char* list;
    const char* reason;
  };
  const std::string head = "QVRREPORT;1;\r\n";
  const std::string fetched = head + "FETCHED;part3;linestat;l.dat;;\r\n";
  const Row rows[] = {
      {"QVRREP", "completed", ""},
      {fetched, "completed", ""},
      {fetched + "DELETING;part3;linestat;;;\r\n", "error", "The session was cut off after"},
      {head + "STORING;part3;dbase;d.bin;;\r\nSTORED", "error", "The session was cut off after"},
      {head + "DELETING;part3;linestat;;;\r\nENDED;;;;completed;\r\n", "completed", ""},
      {head + "ENDED;;;;cancelled;\r\n", "cancelled", "its log does not say why"},
      {std::string(head.size(), '\0'), "error", "its report cannot be read"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.report);
    files_.content.clear();
    const std::size_t told_before = device_.told().size();
    make_engine();
    add_job("JobA", {"FTPDELETE;linestat;"});
    files_.content[kFolder + "JobA\\JobA.rpt"] = row.report;
    const bool runs = row.report == fetched || row.report == "QVRREP";
    const std::string left = kFolder + "Left\\Left.rpt";  // in no list
    files_.make_folders(kFolder + "Left");
    files_.content[left] = head + "STORING;part3;dbase;d.bin;;\r\n";
    engine_->list_interrupted();
    EXPECT_EQ(files_.content[left], head + "STORING;part3;dbase;d.bin;;\r\nENDED;;;;error;\r\n");
    EXPECT_EQ(list(row.list), runs ? "" : line("JobA") + "\r\n");
    if (!runs) {
      make_engine();  // as a line that came after the start
      files_.content.erase(kFolder + row.list + ".sch");
    }
    submit();
    EXPECT_EQ(list(row.list), line("JobA") + "\r\n");
    EXPECT_THAT(reason("JobA"), HasSubstr(row.reason));
    EXPECT_EQ(reason("JobA").empty(), *row.reason == '\0');
    EXPECT_EQ(device_.told().size() > told_before, runs);
  }
}

TEST_F(SchedulerEngineTest, DamageBecomesAnErrorLineWithItsReason) {
  const std::string glued = line("JobD").substr(0, 40) + line("JobE") + line("JobE");
  const std::string cut = line("JobF").substr(0, 60);
  for (const std::string& text :
       {std::string("no index line"), std::string(), std::string("\0x\0", 3), glued})
    add_line(text);
  add_script("JobA", {"FTPFLY;away;"});
  add_line(line("JobA"));
  add_job("JobB", {"FTPACCT;part\x01;"});
  header_.ftp_address = "no address:x";
  add_job("JobC", {});
  header_.ftp_address = "192.0.2.7";
  add_job("Good", {});
  files_.content[kFolder + "index.sch"] += cut;
  files_.content[kFolder + "error.sch"] = "an end is missing";
  submit();
  EXPECT_THAT(base::lines_of(list("error")),
              testing::UnorderedElementsAre("an end is missing", "no index line", std::string("\0x\0", 3),
                                            glued, line("JobA"), line("JobB"), line("JobC"), cut));
  EXPECT_EQ(list("completed"), line("Good") + "\r\n");
  EXPECT_THAT(reason("JobA"), HasSubstr("damaged at line"));
  EXPECT_THAT(reason("JobB"), HasSubstr("control character"));
  EXPECT_NE(reason("JobC"), "");
  EXPECT_TRUE(engine_->answering());
  const std::string told = log("JobPilot");
  EXPECT_THAT(told, AllOf(HasSubstr("damaged: not three fields"), HasSubstr("begins with: no index line")));
  submit();
  EXPECT_EQ(log("JobPilot"), told) << "a damaged line is told once";
  const protocol::ScheduledJob waits = engine_->status().jobs[2];  // somebody may wait for it
  EXPECT_EQ(waits.name, "JobE");
  EXPECT_EQ(engine_->status().jobs[3].name, "JobA") << "each job once";
  EXPECT_EQ(waits.state, JobState::kDamaged);
  EXPECT_THAT(waits.reason, HasSubstr("is damaged: "));
}

TEST_F(SchedulerEngineTest, ManyLinesAreTakenInTurns) {
  constexpr std::size_t kLines = 5000;
  std::string text;
  for (std::size_t i = 0; i < kLines; ++i)
    text += line("Gone" + std::to_string(i)) + "\r\n";
  files_.content[kFolder + "index.sch"] = text;
  add_job("JobA", {});
  int writings = 0;
  files_.before = [&](std::string_view operation, const std::string& path) {
    writings += operation == "append" && path.ends_with("error.sch") ? 1 : 0;
  };
  engine_->list_interrupted();
  engine_->request(1);
  EXPECT_EQ(list("error"), "") << "the first lines are not yet looked back at";
  tick_until([&] { return list("error") != ""; });
  EXPECT_TRUE(woken_) << "the rest is left to ticks";
  EXPECT_EQ(base::lines_of(list("error")).size(), 500U);
  EXPECT_EQ(engine_->status().jobs.size(), 2000U);
  EXPECT_EQ(engine_->status().jobs_left_out, kLines + 1 - 2000);
  tick_until([&] { return list("completed") == line("JobA") + "\r\n"; });
  EXPECT_EQ(list("error"), text);
  EXPECT_EQ(writings, 10);
  EXPECT_THAT(log("JobPilot"), HasSubstr("4980 more jobs have no folder and are listed as errors."));
  EXPECT_THAT(files_.list(kLogs), testing::UnorderedElementsAre("JobA.log", "JobPilot.log"));
}

TEST_F(SchedulerEngineTest, DialsFirstAndOnlyWithACommand) {
  header_.dial_up_flag = 1;
  header_.dial_up_connection = "Branch";
  header_.number_to_dial = "0123";
  add_job("JobA", {});
  submit();
  EXPECT_THAT(reason("JobA"), HasSubstr("no dial command is configured"));
  EXPECT_THAT(device_.told(), IsEmpty());
  SchedulerSettings settings;
  settings.dial_command = "/usr/bin/dial";
  make_engine(settings);
  add_job("JobB", {});
  submit();
  EXPECT_THAT(device_.told(),
              ElementsAre("dial /usr/bin/dial Branch 0123", "login admin:secret@192.0.2.7:2121", "close"));
}

TEST_F(SchedulerEngineTest, RunsDueLinesOnceInTheirOrder) {
  const auto serial_of_now = base::serial_text(clock_.now());
  add_job("JobA", {"FTPACCT;part1;"});
  add_line(line("JobA"));  // the same line again
  add_script("Later", {});
  add_line(line("Later", "46342"));
  add_script("Now", {"FTPACCT;part2;"});
  add_line(line("Now", serial_of_now));
  add_script("Repeats", {});
  add_line(line("Repeats", "46341.5", "2"));
  add_job("Done", {});
  files_.content[kFolder + "cancelled.sch"] = line("Done") + "\r\n";
  submit();
  submit();
  EXPECT_EQ(list("completed"), line("JobA") + "\r\n" + line("Now", serial_of_now) + "\r\n");
  EXPECT_EQ(std::ranges::count(device_.told(), std::string("close")), 2);
  EXPECT_THAT(log("JobPilot"), HasSubstr("Later is left alone until its start, 2026-11-16 00:00:00,"));
  EXPECT_THAT(log("JobPilot"), HasSubstr("Repeats has an interval or a period and is left alone"));
  EXPECT_EQ(base::lines_of(log("JobPilot")).size(), 2U);  // said once, not at every look
  const std::vector<protocol::ScheduledJob> expected{
      {"JobA", "Retrieve", JobState::kFinished},     {"JobA", "Retrieve", JobState::kFinished},
      {"Later", "Retrieve", JobState::kLeftAlone},   {"Now", "Retrieve", JobState::kFinished},
      {"Repeats", "Retrieve", JobState::kLeftAlone}, {"Done", "Retrieve", JobState::kFinished}};
  EXPECT_EQ(engine_->status().jobs, expected);
}

TEST_F(SchedulerEngineTest, AnswersUntilTheResultsAreTaken) {
  add_job("JobA", {});
  files_.content[kFolder + "cancelled.sch"] = line("JobA") + "\r\n";  // before this program was started
  engine_->request(1);
  EXPECT_EQ(channel_.posts.size(), 1U);
  EXPECT_TRUE(engine_->answering());
  for (const int code : {2, 6}) {
    channel_.posts.clear();
    files_.content.erase(kFolder + "index.sch");
    add_job("Job" + std::to_string(code), {});
    submit();
    const std::size_t answers = channel_.posts.size();
    EXPECT_GE(answers, 1U);
    engine_->repeat();
    engine_->repeat();
    EXPECT_EQ(channel_.posts.size(), answers + 2);
    engine_->request(7);
    EXPECT_TRUE(engine_->answering());
    engine_->request(code);
    EXPECT_FALSE(engine_->answering());
    engine_->repeat();
    EXPECT_EQ(channel_.posts.size(), answers + 2);
  }
  EXPECT_THAT(log("JobPilot"), HasSubstr("unknown code 7"));
}

TEST_F(SchedulerEngineTest, DropsTakenLinesAndKeepsTheOthers) {
  add_job("JobA", {});
  add_job("JobB", {});
  submit();
  files_.content.erase(kFolder + "index.sch");  // tells of nothing that was taken
  engine_->request(2);
  EXPECT_THAT(list("completed"), HasSubstr(line("JobA")));
  files_.content[kFolder + "index.sch"] = base::to_upper(line("JobB")) + "\r\n";
  files_.content[kFolder + "error.sch"] = base::to_upper(line("JobB")) + "\r\n";
  const int replaced = files_.replaced;
  engine_->request(2);
  EXPECT_EQ(list("completed"), line("JobB") + "\r\n");
  EXPECT_EQ(files_.replaced, replaced + 1);  // the list that stays as it is is not rewritten
  add_line(line("JobA"));
  for (int look = 0; look < 2; ++look)
    engine_->request(1);
  EXPECT_FALSE(engine_->running()) << "a job that has run is not run again when its line comes back";
  EXPECT_EQ(list("completed"), line("JobB") + "\r\n" + line("JobA") + "\r\n") << "somebody waits for it";
  files_.content.erase(kFolder + "completed.sch");
  engine_->request(1);
  EXPECT_THAT(list("completed"), HasSubstr(line("JobA"))) << "a list that was lost";

  make_engine();  // jobs in the index, with a folder alone, and with neither
  files_.make_folders(kFolder + "Left");
  const std::string kept = line("Left") + "\r\n" + line("Waits") + "\r\ndamaged\r\n";
  files_.content[kFolder + "index.sch"] = base::to_lower(line("Waits")) + "\r\n";
  files_.content[kFolder + "completed.sch"] = line("Gone") + "\r\n" + kept;
  engine_->list_interrupted();
  EXPECT_EQ(list("completed"), kept);
}

TEST_F(SchedulerEngineTest, StopsARunningSessionAtOnce) {
  device_.fails_at = "get";
  add_job("JobA", {"FTPACCT;part3;", kGet, "FTPDELETE;linestat;"});
  add_job("JobB", {});
  engine_->request(1);
  tick_until([this] { return device_.reached_hang == 1; });
  engine_->request(5);
  EXPECT_THAT(log("JobA"),
              HasSubstr("The session was asked for. It is here: Fetching allstats.csv, 100 bytes."));
  EXPECT_EQ(engine_->status().jobs[1].state, JobState::kWaiting);
  EXPECT_EQ(engine_->stop_job("JobB"), StopOutcome::kTakenOut);
  EXPECT_EQ(engine_->stop_job("JobA"), StopOutcome::kStopped);
  EXPECT_EQ(list("cancelled"), line("JobB") + "\r\n" + line("JobA") + "\r\n");
  EXPECT_EQ(device_.told().back(), "get allstats.csv > \\data\\Scheduler\\JobA\\Stats.csv");
  EXPECT_EQ(reason("JobA"), "The session was stopped in the scheduler.");

  device_.fails_at = "account";
  device_.deaf = true;
  add_job("JobC", {"FTPACCT;part3;"});
  engine_->request(1);
  tick_until([this] { return device_.reached_hang == 2; });
  EXPECT_EQ(engine_->stop_job("JobC"), StopOutcome::kStopped);
  engine_->stop();
  EXPECT_EQ(engine_->status().running_job, "JobC") << "whatever the session does, nobody waits for it here";
  device_.deaf = false;
  tick_until([this] { return !engine_->running(); });
  EXPECT_THAT(list("cancelled"), HasSubstr(line("JobC")));
  add_job("JobD", {});
  engine_->request(1);
  EXPECT_FALSE(engine_->running());
}

TEST_F(SchedulerEngineTest, HoldsTelnetSessions) {
  header_.ftp_address = "192.0.2.7:2121:2323";
  add_script("JobA", {}, protocol::ScriptKind::kTelnet);
  add_line(line("JobA"));
  submit();
  EXPECT_THAT(device_.told(), ElementsAre("telnet JobA 192.0.2.7:2323", "attached"));
  EXPECT_EQ(list("completed"), line("JobA") + "\r\n");
  EXPECT_THAT(log("JobA"),
              HasSubstr("The device ended the Telnet session; 100 bytes came from the device and "
                        "1 byte from the terminal.\r\n"));
}

TEST_F(SchedulerEngineTest, SurvivesFilesThatCannotBeUsed) {
  add_job("JobA", {});
  std::string broken = "completed.sch";
  files_.before = [&](std::string_view operation, const std::string& path) {
    if (operation != "make_folder" && path.ends_with(broken)) throw base::Fault(base::kDiskFull, path);
  };
  submit();
  EXPECT_EQ(list("completed"), "");
  EXPECT_THAT(log("JobPilot"), HasSubstr("cannot be listed yet: Disk full"));
  files_.content[kFolder + "error.sch"] = line("JobA") + "\r\n";  // of an earlier run
  engine_->request(1);
  engine_->request(6);
  EXPECT_TRUE(engine_->repeating());
  EXPECT_EQ(engine_->status().jobs[0].state, JobState::kUnlisted);
  EXPECT_THAT(engine_->status().jobs[0].reason, HasSubstr("is completed. It is not listed: Disk full"));
  broken = "index.sch";
  engine_->repeat();
  EXPECT_EQ(list("completed"), line("JobA") + "\r\n") << "listed once there is room";
  EXPECT_FALSE(engine_->repeating());
  submit();
  EXPECT_THAT(log("JobPilot"), HasSubstr("the job index cannot be read: Disk full"));
  broken = ".log";
  add_job("JobB", {});
  submit();
  EXPECT_THAT(list("completed"), HasSubstr(line("JobB")));
}

}  // namespace
}  // namespace qvrcom::scheduler
