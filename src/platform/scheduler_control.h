#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "protocol/scheduler_status.h"

namespace qvrcom::platform {

// Whether a scheduler program could be asked.
enum class Reach {
  kAnswered,
  kNotRunning,
  kSilent,  // one is running and gives no answer
};

struct StatusAnswer {
  Reach reach = Reach::kNotRunning;
  std::optional<protocol::SchedulerStatus> status;  // when it answered
};

enum class StopOutcome {
  kStopped,     // its session ran and is told to end; the job is listed as cancelled when it has
  kTakenOut,    // it was waiting and is listed as cancelled
  kUnknownJob,  // no such job waits or runs
  kNotRunning,  // no scheduler is running
  kSilent,      // one is running and gives no answer
};

// What can be asked of the running scheduler program beside the suite's own messages.
class SchedulerControl {
 public:
  virtual ~SchedulerControl() = default;

  virtual StatusAnswer status() = 0;

  // Ends the running session, lists its job as cancelled and ends the program. It has gone when this answers
  // kAnswered; kSilent also says that it was told and is still there.
  virtual Reach stop() = 0;

  virtual StopOutcome stop_job(const std::string& job_name) = 0;
};

}  // namespace qvrcom::platform
