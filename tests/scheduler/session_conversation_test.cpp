#include "scheduler/session_conversation.h"

#include <gmock/gmock.h>

#include "base/text.h"
#include "scheduler/scripted_device.h"

namespace qvrcom::scheduler {
namespace {

using jobs::CommandKind;
using testing::HasSubstr;

constexpr const char* kResetAll = "Retrieve Reset Statistics All Partitions";
constexpr const char* kConfiguration = "Retrieve Entire Configuration";

// The device's own "dbase", then "linestat" of so many partitions, with its deletion where that is asked for.
SessionPlan plan_of(const std::string& description, int partitions, bool deletes) {
  SessionPlan plan;
  plan.description = description;
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
  SessionReport report;
  std::string log;
};

Held hold(ScriptedDevice& device, const SessionPlan& plan) {
  SchedulerSettings settings;
  settings.login_pause = std::chrono::milliseconds(1);
  DeviceLine line(device, [](std::uint64_t) {});
  Held held;
  held.report = hold_conversation(plan, settings, line, device, [&](const SessionEvent& event) {
    if (!event.text.empty()) held.log += event.text + "\n";
  });
  return held;
}

// Operation | partitions | what fails = the reply ("Cut" and no reply cut the connection) | "gone" when no
// login succeeds after it | what the device is told | "done" or "error" | in the log.
constexpr const char* kCases =
    R"(Retrieve Reset Statistics All Partitions|3|account part2=501 Not present||L G0 A1 G1 D A2 A3 G3 D C|done|part2 is skipped. Trying to account part2: 501 Not present.
Retrieve Reset Statistics All Partitions|3|get linestat > 2=The transfer was cut short||L G0 A1 G1 D A2 G2 A3 G3 D C|done|2 of 3 partitions are done; skipped: part2.
Retrieve Reset Statistics All Partitions|3|get linestat > 2=Cut||L G0 A1 G1 D A2 G2 L A3 G3 D C|done|The connection was lost; logged in again at 192.0.2.7 port 21 as admin.
Retrieve Reset Statistics All Partitions|2|remove=||L G0 A1 G1 D L A2 G2 D C|done|Selected part2.
Retrieve Entire Configuration|2|get linestat > 2=Cut||L G0 A1 G1 A2 G2|done|1 of 2 partitions are done; skipped: part2.
Retrieve Reset Statistics All Partitions|4|get linestat > 2=Cut|gone|L G0 A1 G1 D A2 G2 L L|done|1 of 4 partitions are done; skipped: part2, part3, part4.
Retrieve Entire Configuration|3|get linestat > 1=Cut|gone|L G0 A1 G1 L L|error|part3 is skipped. Trying to login admin:***@192.0.2.7:21: 530 Not with ***.
Retrieve All Message Indexes|2|account part1=501 Not present||L G0 A1 A2 G2 C|done|1 of 2 partitions are done; skipped: part1.
Retrieve All Message Indexes|1|account part1=501 Not present||L G0 A1|error|
Retrieve Reset Statistics All Partitions|2|get dbase=550 No||L G0|error|
Retrieve Entire Configuration |2|account part1=501 Not present||L G0 A1|error|
Retrieve Statistics All Partitions|2|get linestat > 1=Cut||L G0 A1 G1|error|)";

TEST(SessionConversation, SkipsTheRestOfAFailedPartition) {
  for (const std::string_view row : base::lines_of(kCases)) {
    SCOPED_TRACE(row);
    const std::vector<std::string_view> fields = base::split(row, "|");
    const std::vector<std::string> cells(fields.begin(), fields.end());
    ASSERT_EQ(cells.size(), 7U);
    const std::string at = cells[2].substr(0, cells[2].find('='));
    const std::string reply = cells[2].substr(at.size() + 1);
    ScriptedDevice device;
    device.troubles = {{at, reply, reply.empty() || reply == "Cut"}};
    if (cells[3] == "gone")
      device.troubles.insert(device.troubles.end(),
                             {{"login", ""}, {"login", "530 Not with secret", true, 9}});
    const Held held = hold(device, plan_of(cells[0], std::stoi(cells[1]), cells[0] == kResetAll));
    EXPECT_EQ(told(device), cells[4]);
    EXPECT_EQ(held.report.outcome, cells[5] == "done" ? Outcome::kCompleted : Outcome::kError);
    EXPECT_EQ(held.report.reason.empty(), cells[5] == "done");
    EXPECT_THAT(held.log, HasSubstr(cells[6]));
    EXPECT_EQ(held.log.find("secret"), std::string::npos);
  }
}

TEST(SessionConversation, LogsInAgainNoMoreThanEightTimes) {
  ScriptedDevice device;
  device.troubles = {{"get linestat", "Cut", true, 64}};
  const Held held = hold(device, plan_of(kConfiguration, 12, false));
  EXPECT_EQ(std::ranges::count(told(device), 'L'), 9);
  EXPECT_EQ(held.report.outcome, Outcome::kError);
  EXPECT_THAT(held.report.reason, HasSubstr("too often"));
  EXPECT_THAT(held.log, HasSubstr("0 of 12 partitions are done"));
}

TEST(SessionConversation, ACancelIsNotForgiven) {
  ScriptedDevice device;
  device.fails_at = "get linestat > 2";
  DeviceLine line(device, [](std::uint64_t) {});
  std::jthread canceller([&] {
    while (device.reached_hang == 0)
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    line.cancel();
  });
  const SessionReport report = hold_conversation(plan_of(kResetAll, 3, true), {}, line, device, [](auto) {});
  EXPECT_EQ(report.outcome, Outcome::kCancelled);
  EXPECT_EQ(told(device), "L G0 A1 G1 D A2 G2");
}

}  // namespace
}  // namespace qvrcom::scheduler
