#include <gmock/gmock.h>

#include "base/text.h"
#include "doubles/caught.h"
#include "doubles/manual_clock.h"
#include "doubles/memory_files.h"
#include "doubles/memory_machine.h"
#include "jobs/report_file.h"
#include "protocol/job_report.h"
#include "protocol/script_grammar.h"
#include "scheduler/run_conversation.h"
#include "scheduler/run_log.h"
#include "scheduler/run_plan.h"
#include "scheduler/scheduler_settings.h"
#include "scheduler/scripted_device.h"

namespace qvrcom::scheduler {
namespace {

using protocol::CommandKind;
using testing::HasSubstr;

constexpr const char* kResetAll = "Retrieve Reset Statistics All Partitions";
constexpr const char* kConfiguration = "Retrieve Entire Configuration";
constexpr const char* kReport = "\\JobA\\JobA.rpt";

// The device's own "dbase", then "linestat" of so many partitions, with its deletion where that is asked for.
RunPlan plan_of(const std::string& description, int partitions, bool deletes) {
  RunPlan plan;
  plan.description = description;
  plan.folder = "\\JobA";
  plan.login = {"192.0.2.7", 21, "admin", "secret"};
  plan.steps.push_back({CommandKind::kGet, "dbase", "0", 0});
  for (int n = 1; n <= partitions; ++n) {
    plan.steps.push_back({CommandKind::kAccount, "part" + std::to_string(n), {}, 0});
    plan.steps.push_back({CommandKind::kGet, "linestat", std::to_string(n), 0});
    if (deletes) plan.steps.push_back({CommandKind::kDelete, "linestat", {}, 0});
  }
  return plan;
}

// "L G0 A1 G1 D C": login, fetches, accounts, deletions, close.
std::string told(const ScriptedDevice& device) {
  std::string text;
  for (const std::string& operation : device.told()) {
    const char kind = static_cast<char>(operation[0] - 'a' + 'A');
    text += text.empty() ? "" : " ";
    text += kind == 'R' ? 'D' : kind;
    if (kind == 'A') text += operation.substr(12);
    if (kind == 'G') text += operation.substr(operation.find('>') + 2);
  }
  return text;
}

struct Held {
  RunResult report;
  std::string log;
};

Held hold(ScriptedDevice& device, const RunPlan& plan, doubles::MemoryFiles& files) {
  files.make_folders("\\JobA");
  SchedulerSettings settings;
  settings.login_pause = std::chrono::milliseconds(1);
  DeviceLine line(device, [](std::uint64_t) {});
  Held held;
  held.report = hold_conversation(plan, settings, line, device, files, [&](const RunEvent& event) {
    if (!event.text.empty()) held.log += event.text + "\n";
  });
  return held;
}

Held hold(ScriptedDevice& device, const RunPlan& plan) {
  doubles::MemoryFiles files;
  return hold(device, plan, files);
}

// Operation | partitions | what fails = the reply ("Cut" and no reply cut the connection), or which fetches
// bring nothing | "gone" when no login succeeds after it | what the device is told | "done" or "error" | in
// the log.
constexpr const char* kCases =
    R"(Retrieve Reset Statistics All Partitions|3|account part2=501 Not present||L G0 A1 G1 D A2 A3 G3 D C|done|part2 is skipped. Trying to account part2: 501 Not present.
Retrieve Reset Statistics All Partitions|3|get linestat > 2=Disk full||L G0 A1 G1 D A2 G2|error|Deleted linestat.
Retrieve Reset Statistics All Partitions|3|get linestat > 2=The transfer was cut short||L G0 A1 G1 D A2 G2 A3 G3 D C|done|2 of 3 partitions are done; skipped: part2.
Retrieve Reset Statistics All Partitions|3|get linestat > 2=Cut||L G0 A1 G1 D A2 G2 L A3 G3 D C|done|The connection was lost; logged in again at 192.0.2.7 port 21 as admin.
Retrieve Reset Statistics All Partitions|2|remove=||L G0 A1 G1 D L A2 G2 D C|done|Selected part2.
Retrieve Entire Configuration|2|get linestat > 2=Cut||L G0 A1 G1 A2 G2|done|1 of 2 partitions are done; skipped: part2.
Retrieve Reset Statistics All Partitions|4|get linestat > 2=Cut|gone|L G0 A1 G1 D A2 G2 L L|done|1 of 4 partitions are done; skipped: part2, part3, part4.
Retrieve Entire Configuration|3|get linestat > 1=Cut|gone|L G0 A1 G1 L L|error|part3 is skipped. Trying to login admin: 530 No.
Retrieve All Message Indexes|2|account part1=501 Not present||L G0 A1 A2 G2 C|done|1 of 2 partitions are done; skipped: part1.
Retrieve All Message Indexes|1|account part1=501 Not present||L G0 A1|error|
Retrieve Reset Statistics All Partitions|2|get dbase=550 No||L G0|error|
Retrieve Reset Statistics All Partitions|2|1||L G0 A1 G1 G1 D A2 G2 D C|done|Nothing came. It is fetched once more.
Retrieve Reset Statistics All Partitions|2|1 1||L G0 A1 G1 G1 A2 G2 D C|done|1 of 2 partitions are done; skipped: part1.
Retrieve Reset Statistics All Partitions|2|0 0||L G0 G0|error|
Retrieve Entire Configuration|1|0 1||L G0 A1 G1 C|done|
Retrieve Entire Configuration |2|account part1=501 Not present||L G0 A1|error|
Retrieve Entire Configuration|1|close=No byte||L G0 A1 G1 C|done|did not take leave properly
Retrieve Statistics All Partitions|2|get linestat > 1=Cut||L G0 A1 G1|error|)";

TEST(RunConversation, SkipsTheRestOfAFailedPartition) {
  for (const std::string_view row : base::lines_of(kCases)) {
    SCOPED_TRACE(row);
    const std::vector<std::string_view> fields = base::split(row, "|");
    const std::vector<std::string> cells(fields.begin(), fields.end());
    ASSERT_EQ(cells.size(), 7U);
    const std::string at = cells[2].substr(0, cells[2].find('='));
    ScriptedDevice device;
    if (at.size() < cells[2].size()) {
      const std::string reply = cells[2].substr(at.size() + 1);
      device.troubles = {{at, reply, reply.empty() || reply == "Cut"}};
    } else {
      for (const std::string_view file : base::split(at, " "))
        device.empty.emplace(file);
    }
    if (cells[3] == "gone")
      device.troubles.insert(device.troubles.end(), {{"login", ""}, {"login", "530 No", true, 9}});
    const Held held = hold(device, plan_of(cells[0], std::stoi(cells[1]), cells[0] == kResetAll));
    EXPECT_EQ(told(device), cells[4]);
    EXPECT_EQ(held.report.ending, cells[5] == "done" ? Ending::kCompleted : Ending::kError);
    EXPECT_EQ(held.report.reason.empty(), cells[5] == "done");
    EXPECT_THAT(held.log, HasSubstr(cells[6]));
    const bool is_tried_again = cells[6].find("once more") != std::string::npos;
    EXPECT_TRUE(!is_tried_again || device.least == 1234U) << "as long as the device has said";
  }
}

TEST(RunConversation, LogsInAgainNoMoreThanEightTimes) {
  ScriptedDevice device;
  device.troubles = {{"get linestat", "Cut", true, 64}};
  const Held held = hold(device, plan_of(kConfiguration, 12, false));
  EXPECT_EQ(std::ranges::count(told(device), 'L'), 9);
  EXPECT_EQ(held.report.ending, Ending::kError);
  EXPECT_THAT(held.report.reason, HasSubstr("too often"));
  EXPECT_THAT(held.log, HasSubstr("0 of 12 partitions are done"));
}

// Counted from the first login on: three more follow here, the last one after a pause.
TEST(RunConversation, HasOneLimitOfTimeForAllItsLogins) {
  ScriptedDevice device;
  device.troubles = {{"get linestat > 1", "Cut", true}, {"login", ""}, {"login", "530 No", true, 2}};
  hold(device, plan_of(kConfiguration, 4, false));
  ASSERT_EQ(device.session_limits.size(), 4U);
  EXPECT_LT(device.session_limits[3], device.session_limits[0]);
}

TEST(RunConversation, ACancelIsNotForgiven) {
  ScriptedDevice device;
  device.fails_at = "get linestat > 2";
  DeviceLine line(device, [](std::uint64_t) {});
  std::jthread canceller([&] {
    while (device.reached_hang == 0)
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    line.cancel();
  });
  doubles::MemoryFiles files;
  files.make_folders("\\JobA");
  const RunResult report =
      hold_conversation(plan_of(kResetAll, 3, true), {}, line, device, files, [](auto) {});
  EXPECT_EQ(report.ending, Ending::kCancelled);
  EXPECT_EQ(told(device), "L G0 A1 G1 D A2 G2");
  EXPECT_EQ(jobs::report_of(files, "\\JobA")->ending(), protocol::Ending::kCancelled);
}

TEST(RunConversation, ReportsWhatItHasDone) {
  ScriptedDevice device;
  device.troubles = {{"remove", "450 Busy"}};
  RunPlan plan = plan_of(kResetAll, 2, true);
  plan.steps.push_back({CommandKind::kPut, "dbase", "\\JobA\\P2.dat", 0});
  doubles::MemoryFiles files;
  hold(device, plan, files);
  EXPECT_EQ(files.content[kReport],
            "QVRREPORT;1;\r\n"
            "FETCHED;;dbase;0;;\r\n"
            "FETCHED;part1;linestat;1;;\r\n"
            "DELETING;part1;linestat;;;\r\n"
            "FAILED;part1;linestat;;Trying to remove linestat: 450 Busy.;\r\n"
            "FETCHED;part2;linestat;2;;\r\n"
            "DELETING;part2;linestat;;;\r\n"
            "DELETED;part2;linestat;;;\r\n"
            "STORING;part2;dbase;P2.dat;;\r\n"
            "STORED;part2;dbase;P2.dat;;\r\n"
            "ENDED;;;;completed;\r\n");
  EXPECT_EQ(hold(device, plan, files).report.ending, Ending::kError) << "it has changed the device before";
  files.content.clear();
  device.troubles = {{"login", "530 No"}};
  hold(device, plan, files);
  EXPECT_EQ(files.content[kReport],
            "QVRREPORT;1;\r\nFAILED;;;;Trying to login admin: 530 No.;\r\nENDED;;;;error;\r\n");
}

// The disk is full from the n-th line of the report on.
TEST(RunConversation, DoesNothingThatItCannotReport) {
  RunPlan plan = plan_of(kResetAll, 2, true);
  plan.steps.push_back({CommandKind::kPut, "dbase", "P", 0});
  const std::size_t operations[] = {0, 2, 4, 4, 5, 7, 7, 8, 8, 9};  // that the device is told by then
  for (std::size_t room = 0; room < std::size(operations); ++room) {
    SCOPED_TRACE(room);
    ScriptedDevice device;
    doubles::MemoryFiles files;
    std::size_t lines = 0;
    files.before = [&](std::string_view operation, const std::string& path) {
      if (operation == "append" && lines++ >= room) throw base::Fault(base::kDiskFull, path);
    };
    const Held held = hold(device, plan, files);
    EXPECT_EQ(device.told().size(), operations[room]);
    EXPECT_EQ(held.report.ending, Ending::kError);
    EXPECT_THAT(held.report.reason, HasSubstr("The job's report cannot be written, so nothing more is done"));
  }
}

TEST(RunConversation, OverwritesNothingOnceItHasChangedTheDevice) {
  ScriptedDevice device;
  doubles::MemoryFiles files;
  files.content = {{"1", "old"}, {"2", "old"}};
  const Held held = hold(device, plan_of(kResetAll, 2, true), files);
  EXPECT_EQ(told(device), "L G0 A1 G1 D A2 C");
  EXPECT_THAT(held.log,
              HasSubstr("part2 is skipped. Fetching linestat: The device has been changed, and 2 is"));
}

TEST(RunConversation, DeletesNothingOfAnAccountThatHasFailed) {
  ScriptedDevice device;
  device.troubles = {{"get linestat > 1", "550 No"}};
  RunPlan plan = plan_of(kResetAll, 2, false);
  plan.steps.push_back({CommandKind::kAccount, "part1", {}, 0});
  plan.steps.push_back({CommandKind::kDelete, "linestat", {}, 0});
  hold(device, plan);
  EXPECT_EQ(told(device), "L G0 A1 G1 A2 G2 C");
}

TEST(RunPlan, ReadsAndWritesInTheJobsFolderAlone) {
  const std::string inside = "\\data\\Scheduler\\JobA\\";
  const std::string kOutside = "not directly in the job's folder";
  struct Row {
    std::vector<std::pair<std::string, std::string>> fetches;  // device file or account, local file
    std::string refused;
    std::string script = "\\data\\Scheduler\\JobA\\JobA.scr";
    std::string link = "\\data\\Scheduler\\JobA\\link";
  };
  std::vector<Row> rows = {
      {{}, "outside the scheduler folder", "\\other\\JobA\\JobA.scr"},
      {{}, "outside the scheduler folder", "\\data\\Scheduler\\..\\JobA\\JobA.scr"},
      {{}, "The job's folder", inside + "JobA.scr", "\\data\\Scheduler\\JobA"},
      {{}, "The script", inside + "JobA.scr", inside + "JobA.scr"},
      {{{"a", inside + "jobA.RPT"}}, "names the job's own script or report"},
      {{{"a", inside + "JobA.scr"}}, "names the job's own script or report"},
      {{{"a", inside + "b.part"}, {"b", inside + "b"}}, "which is of files that are not whole"},
      {{{"a", inside + "link"}}, "leads elsewhere"},
      {{{"a", inside + "x"}, {"b", inside + "X"}}, "The script fetches two device files into X."},
      {{{"part1", ""}, {"a", inside + "x"}, {"part2", ""}, {"a", inside + "x"}}, "two device files into x."},
      {{{"part1", ""}, {"a", inside + "x"}, {"part1", ""}, {"a", inside + "x"}, {"b", inside + "y"}}, ""},
  };
  for (const std::string& path :
       {std::string("\\etc\\passwd"), std::string("x"), inside, inside + "..", inside + "..\\JobB\\x",
        inside + "sub\\x", inside + "a/b", std::string("\\data\\Scheduler\\x")})
    rows.push_back({{{"a", path}}, kOutside});
  for (const Row& row : rows) {
    doubles::MemoryFiles files;
    files.links = {row.link};
    protocol::ScriptHeader header;
    header.ftp_address = "192.0.2.7";
    std::string text = protocol::header_text(header, protocol::ScriptKind::kTransfer) + "\r\n";
    for (const auto& [from, local] : row.fetches)
      text += local.empty() ? "FTPACCT;" + from + ";\r\n"
                            : "FTPGET;REMOTEFILE=" + from + ";LOCALFILE=" + local + ";\r\n";
    files.content[inside + "JobA.scr"] = text + "FTPDISCONNECT;\r\n";
    const std::string fault =
        doubles::fault_of([&] { make_plan(files, "\\data\\Scheduler\\", "JobA", row.script); });
    EXPECT_EQ(fault.empty(), row.refused.empty()) << fault;
    EXPECT_THAT(fault, testing::HasSubstr(row.refused));
  }
}

TEST(RunLog, KeepsItsNewerHalfAtItsLimit) {
  doubles::MemoryFiles files;
  doubles::ManualClock clock;
  const std::string half(1U << 19U, 'x');
  files.make_folders("\\Logs");
  files.content["\\Logs\\JobA.log"] = "old" + half + "\r\nmiddle\r\n" + half + "new\r\n";
  RunLog(files, clock, "\\Logs\\").write("JobA", "Said last.");
  EXPECT_EQ(files.content["\\Logs\\JobA.log"], half + "new\r\n2026-11-15 12:10:05 Said last.\r\n");
}

TEST(SchedulerSettings, TakesGoodValuesAndTellsOfBadOnes) {
  doubles::MemoryMachine machine;
  const auto set = [&](const char* key, const char* value) {
    machine.settings[{"QVRCOM+", "JobPilot", key}] = value;
  };
  set("LargestFileMiB", "2");
  set("ConnectSeconds", "0");
  set("IdleSeconds", "5 minutes");
  set("SessionMinutes", "10");
  set("AttachSeconds", "90");
  set("TerminalIdleSeconds", "86400");
  set("DialCommand", "/usr/bin/dial");
  const SettingsReading reading = read_settings(machine);
  EXPECT_EQ(reading.settings.limits.largest_file, 2U << 20U);
  EXPECT_EQ(reading.settings.limits.connect, std::chrono::seconds(30));
  EXPECT_EQ(reading.settings.limits.idle, std::chrono::seconds(60));
  EXPECT_EQ(reading.settings.limits.session, std::chrono::minutes(10));
  EXPECT_EQ(reading.settings.attach, std::chrono::seconds(90));
  EXPECT_EQ(reading.settings.terminal_idle, std::chrono::hours(24));
  EXPECT_EQ(reading.settings.dial_command, "/usr/bin/dial");
  EXPECT_THAT(reading.complaints,
              testing::ElementsAre(testing::HasSubstr("ConnectSeconds"), testing::HasSubstr("IdleSeconds")));
}

}  // namespace
}  // namespace qvrcom::scheduler
