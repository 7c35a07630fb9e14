#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/scheduler_control.h"

namespace qvrcom::requests {

// What the scheduler does for a session's job, or for the job that it waits for.
struct SessionProgress {
  std::string waits_for;    // name of the job whose session runs first; "" when it is the session's own
  std::string description;  // of that job; "" when it is not known
  std::string step;         // "Fetching allstats.csv"
  std::uint64_t bytes_done = 0;
  std::uint64_t bytes_hinted = 0;  // 0 when nobody knows
  bool operator==(const SessionProgress&) const = default;
};

// Nothing when the scheduler says nothing of this job, or has done with it.
std::optional<SessionProgress> progress_of(const std::optional<protocol::SchedulerStatus>& status,
                                           const std::string& job_name);

// On one line: "waits for Nov1526120000001, Storing firmware, 51200 of about 204800 bytes"; "" for nothing.
std::string progress_line(const std::optional<SessionProgress>& progress);

// The same of the session that runs, whoever ordered it.
std::string running_line(const std::optional<protocol::SchedulerStatus>& status);

}  // namespace qvrcom::requests
