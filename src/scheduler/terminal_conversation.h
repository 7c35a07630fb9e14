#pragma once

#include <atomic>
#include <functional>

#include "platform/dialer.h"
#include "platform/terminal_relay.h"
#include "scheduler/scheduler_settings.h"
#include "scheduler/session_plan.h"
#include "scheduler/session_telling.h"

namespace qvrcom::scheduler {

// Holds the Telnet session of a plan, from dialling to the end: completed when the terminal or the device
// ended it. The log tells of it how many bytes went each way, never which.
SessionReport hold_terminal(const SessionPlan& plan, const SchedulerSettings& settings,
                            platform::TerminalRelay& relay, platform::Dialer& dialer,
                            const std::atomic<bool>& cancelled,
                            const std::function<void(SessionEvent)>& tell);

}  // namespace qvrcom::scheduler
