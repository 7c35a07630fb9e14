#pragma once

#include <functional>

#include "platform/dialer.h"
#include "scheduler/device_line.h"
#include "scheduler/scheduler_settings.h"
#include "scheduler/session_plan.h"
#include "scheduler/session_telling.h"

namespace qvrcom::scheduler {

// Holds the conversation of a plan from dialling to the end. The first failure skips the rest of its
// partition's lines, so nothing is fetched or deleted under another account, or deleted after a fetch that
// failed. It ends the session, too, unless the plan forgives failed partitions: then the session goes on with
// the next one, over a fresh connection where the old one was lost, which is told each time.
SessionReport hold_conversation(const SessionPlan& plan, const SchedulerSettings& settings, DeviceLine& line,
                                platform::Dialer& dialer, const std::function<void(SessionEvent)>& tell);

}  // namespace qvrcom::scheduler
