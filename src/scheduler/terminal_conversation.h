#pragma once

#include <atomic>
#include <functional>

#include "platform/dialer.h"
#include "platform/terminal_relay.h"
#include "scheduler/run_plan.h"
#include "scheduler/run_telling.h"
#include "scheduler/scheduler_settings.h"

namespace qvrcom::scheduler {

// Holds the Telnet session of a plan, from dialling to the end: completed when the terminal or the device
// ended it. The log tells of it how many bytes went each way, never which.
RunResult hold_terminal(const RunPlan& plan, const SchedulerSettings& settings,
                        platform::TerminalRelay& relay, platform::Dialer& dialer,
                        const std::atomic<bool>& cancelled, const std::function<void(RunEvent)>& tell);

}  // namespace qvrcom::scheduler
