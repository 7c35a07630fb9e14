#pragma once

#include <atomic>
#include <functional>

#include "platform/dialer.h"
#include "platform/files.h"
#include "platform/terminal_relay.h"
#include "scheduler/device_line.h"
#include "scheduler/run_plan.h"
#include "scheduler/run_telling.h"
#include "scheduler/scheduler_settings.h"

namespace qvrcom::scheduler {

// Holds the conversation of a plan from dialling to the end. The first failure skips the rest of its
// partition's lines, so nothing is fetched or deleted under another account, or deleted after a fetch that
// failed. It ends the session, too, unless the plan forgives failed partitions: then the session goes on with
// the next one, over a fresh connection where the old one was lost, which is told each time. A file that has
// not arrived whole is fetched once more before it counts as failed; one that the device is asked to delete
// something after must not be empty. Each step is written into the job's report before the next; a report
// that cannot be written ends the session with an error.
RunResult hold_conversation(const RunPlan& plan, const SchedulerSettings& settings, DeviceLine& line,
                            platform::Dialer& dialer, platform::Files& files,
                            const std::function<void(RunEvent)>& tell);

// Holds the Telnet session of a plan, from dialling to the end: completed when the terminal or the device
// ended it. The log tells of it how many bytes went each way, never which.
RunResult hold_terminal(const RunPlan& plan, const SchedulerSettings& settings,
                        platform::TerminalRelay& relay, platform::Dialer& dialer,
                        const std::atomic<bool>& cancelled, const std::function<void(RunEvent)>& tell);

}  // namespace qvrcom::scheduler
