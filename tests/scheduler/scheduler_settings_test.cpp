#include "scheduler/scheduler_settings.h"

#include <gmock/gmock.h>

#include "doubles/memory_machine.h"

namespace qvrcom::scheduler {
namespace {

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
