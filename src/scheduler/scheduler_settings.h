#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "platform/device_connection.h"
#include "platform/machine.h"

namespace qvrcom::scheduler {

// The user settings of application "QVRCOM+", section "JobPilot".
struct SchedulerSettings {
  platform::DeviceLimits limits;                             // LargestFileMiB, ConnectSeconds, IdleSeconds,
                                                             // SessionMinutes
  std::string dial_command;                                  // DialCommand: a program's native path, or ""
  std::chrono::milliseconds dial = std::chrono::minutes(2);  // DialSeconds
};

struct SettingsReading {
  SchedulerSettings settings;
  std::vector<std::string> complaints;  // full sentences; the value that is no good keeps its default
};

SettingsReading read_settings(const platform::Machine& machine);

}  // namespace qvrcom::scheduler
