#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qvrcom::platform {

enum class JobState {
  kWaiting,    // due, its turn has not come
  kRunning,    // its session runs
  kLeftAlone,  // not due yet, or it has an interval or a period
  kFinished,   // stands in one of the scheduler's result lists
  kDamaged,    // its index line cannot be read
};

struct ScheduledJob {
  std::string name;         // the job folder's name; "" when the line is damaged
  std::string description;  // "Retrieve Statistics for Partition 3"
  JobState state = JobState::kWaiting;
  bool operator==(const ScheduledJob&) const = default;
};

struct SchedulerStatus {
  std::string version;
  std::int64_t process = 0;        // the operating system's process identifier
  std::string running_job;         // "" when no session runs
  std::string step;                // what the session does: "Fetching allstats.csv"
  std::uint64_t bytes_done = 0;    // of the running transfer
  std::uint64_t bytes_hinted = 0;  // the size its script names, 0 when none; a hint, it may be wrong
  std::vector<ScheduledJob> jobs;  // the lines of "index.sch", in file order
  bool operator==(const SchedulerStatus&) const = default;
};

enum class StopOutcome {
  kStopped,       // its session ran and was ended; the job is listed as cancelled
  kTakenOut,      // it was waiting and is listed as cancelled
  kUnknownJob,    // no such job waits or runs
  kNotReachable,  // no scheduler answered
};

// What can be asked of the running scheduler program beside the suite's own messages.
class SchedulerControl {
 public:
  virtual ~SchedulerControl() = default;

  // Nothing when no scheduler runs.
  virtual std::optional<SchedulerStatus> status() = 0;

  // Ends the running session, lists its job as cancelled and ends the program: it is gone when this returns,
  // or hangs. False when no scheduler runs.
  virtual bool stop() = 0;

  virtual StopOutcome stop_job(const std::string& job_name) = 0;
};

}  // namespace qvrcom::platform
