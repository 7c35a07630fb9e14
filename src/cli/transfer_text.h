#pragma once

#include <optional>
#include <string>

#include "platform/scheduler_control.h"

namespace qvrcom::cli {

// How far the running transfer of a job is, "Storing firmware, 51200 of about 204800 bytes"; "" when the
// scheduler says nothing of this job.
std::string transfer_text(const std::optional<platform::SchedulerStatus>& status,
                          const std::string& job_name);

}  // namespace qvrcom::cli
