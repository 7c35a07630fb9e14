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
  std::chrono::milliseconds attach = std::chrono::seconds(60);         // AttachSeconds
  std::chrono::milliseconds terminal_idle = std::chrono::minutes(10);  // TerminalIdleSeconds
  std::chrono::milliseconds login_pause = std::chrono::seconds(2);     // no setting: before another try
                                                                       // when logging in again has failed
};

struct SettingsReading {
  SchedulerSettings settings;
  std::vector<std::string> complaints;  // full sentences; the value that is no good keeps its default
};

SettingsReading read_settings(const platform::Machine& machine);

}  // namespace qvrcom::scheduler
