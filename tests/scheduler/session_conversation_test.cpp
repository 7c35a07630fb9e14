#include "scheduler/session_conversation.h"

#include <gmock/gmock.h>

#include "scheduler/scripted_device.h"

namespace qvrcom::scheduler {
namespace {

using jobs::CommandKind;
using testing::HasSubstr;

constexpr const char* kResetAll = "Retrieve Reset Statistics All Partitions";
constexpr const char* kConfiguration = "Retrieve Entire Configuration";
constexpr const char* kIndexes = "Retrieve All Message Indexes";

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

TEST(SessionConversation, SkipsTheRestOfAFailedPartition) {
  const struct {
    const char* name;
    SessionPlan plan;
    std::vector<ScriptedDevice::Trouble> troubles;
    const char* told;
    Outcome outcome;
    const char* log;
  } rows[] = {
      {"a missing partition",
       plan_of(kResetAll, 3, true),
       {{"account part2", "501 Not present"}},
       "L G0 A1 G1 D A2 A3 G3 D C",
       Outcome::kCompleted,
       "part2 is skipped. Trying to account part2: 501 Not present.\n"},
      {"a failed fetch is not deleted",
       plan_of(kResetAll, 3, true),
       {{"get linestat > 2", "The transfer was cut short"}},
       "L G0 A1 G1 D A2 G2 A3 G3 D C",
       Outcome::kCompleted,
       "2 of 3 partitions are done; skipped: part2.\n"},
      {"cut in the middle",
       plan_of(kResetAll, 3, true),
       {{"get linestat > 2", "Cut", true}},
       "L G0 A1 G1 D A2 G2 L A3 G3 D C",
       Outcome::kCompleted,
       "The connection was lost; logged in again at 192.0.2.7 port 21 as admin.\n"},
      {"cut between two",
       plan_of(kResetAll, 2, true),
       {{"remove", "", true}},
       "L G0 A1 G1 D L A2 G2 D C",
       Outcome::kCompleted,
       "Selected part2.\n"},
      {"cut in the last",
       plan_of(kConfiguration, 2, false),
       {{"get linestat > 2", "Cut", true}},
       "L G0 A1 G1 A2 G2",
       Outcome::kCompleted,
       "1 of 2 partitions are done; skipped: part2.\n"},
      {"cut twice and never back, something was deleted",
       plan_of(kResetAll, 4, true),
       {{"get linestat > 2", "Cut", true}, {"login", "", false}, {"login", "530 Not with secret", true, 9}},
       "L G0 A1 G1 D A2 G2 L L",
       Outcome::kCompleted,
       "1 of 4 partitions are done; skipped: part2, part3, part4.\n"},
      {"never back, nothing was deleted",
       plan_of(kConfiguration, 3, false),
       {{"get linestat > 1", "Cut", true}, {"login", "", false}, {"login", "530 Not with secret", true, 9}},
       "L G0 A1 G1 L L",
       Outcome::kError,
       "part3 is skipped. Trying to login admin:***@192.0.2.7:21: 530 Not with ***.\n"},
      {"several indexes",
       plan_of(kIndexes, 2, false),
       {{"account part1", "501 Not present"}},
       "L G0 A1 A2 G2 C",
       Outcome::kCompleted,
       "1 of 2 partitions are done; skipped: part1.\n"},
      {"one index",
       plan_of(kIndexes, 1, false),
       {{"account part1", "501 Not present"}},
       "L G0 A1",
       Outcome::kError,
       ""},
      {"the device's own lines are no partition",
       plan_of(kResetAll, 2, true),
       {{"get dbase", "550 No"}},
       "L G0",
       Outcome::kError,
       ""},
      {"nothing but these words",
       plan_of("Retrieve Entire Configuration ", 2, false),
       {{"account part1", "501 Not present"}},
       "L G0 A1",
       Outcome::kError,
       ""},
      {"another operation",
       plan_of("Retrieve Statistics All Partitions", 2, false),
       {{"get linestat > 1", "Cut", true}},
       "L G0 A1 G1",
       Outcome::kError,
       ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    ScriptedDevice device;
    device.troubles = row.troubles;
    const Held held = hold(device, row.plan);
    EXPECT_EQ(told(device), row.told);
    EXPECT_EQ(held.report.outcome, row.outcome) << held.report.reason;
    EXPECT_THAT(held.log, HasSubstr(row.log));
    EXPECT_EQ(held.log.find("secret"), std::string::npos);
    EXPECT_EQ(held.report.reason.empty(), row.outcome == Outcome::kCompleted);
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
