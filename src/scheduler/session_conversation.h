#pragma once

#include <atomic>
#include <functional>
#include <string>

#include "platform/device_connection.h"
#include "platform/dialer.h"
#include "scheduler/result_lists.h"
#include "scheduler/scheduler_settings.h"
#include "scheduler/session_plan.h"

namespace qvrcom::scheduler {

// Something a session did or begins to do.
struct SessionEvent {
  std::string text;        // a full sentence for the log; "" when there is nothing to tell
  std::string step;        // what is begun, "Fetching allstats.csv"; "" when nothing is
  std::uint64_t hint = 0;  // the expected size of that transfer, 0 when nobody said
};

struct SessionReport {
  Outcome outcome = Outcome::kCompleted;
  std::string reason;  // a full sentence, "" when it was completed
};

// Holds the conversation of a plan from dialling to the end: the first failure ends it, so nothing is deleted
// after a fetch that failed. No text of it carries the password, even where the device says it.
SessionReport hold_conversation(const SessionPlan& plan, const SchedulerSettings& settings,
                                platform::DeviceConnection& device, platform::Dialer& dialer,
                                const std::atomic<bool>& cancelled,
                                const std::function<void(SessionEvent)>& tell);

}  // namespace qvrcom::scheduler
