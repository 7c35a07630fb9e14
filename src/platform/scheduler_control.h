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
  kFinished,   // has ended, and its result list said so
  kUnlisted,   // has ended, and its result list cannot be written
  kDamaged,    // its index line cannot be read
};

struct ScheduledJob {
  std::string name;         // the job folder's name; of a damaged line what can still be made out, or ""
  std::string description;  // "Retrieve Statistics for Partition 3"
  JobState state = JobState::kWaiting;
  // Sentences: kUnlisted, how it ended and why that is not listed; kDamaged, what is wrong with the line;
  // kWaiting, why no job is started at all. "" otherwise.
  std::string reason = {};
  bool operator==(const ScheduledJob&) const = default;
};

struct SchedulerStatus {
  std::string version;
  std::int64_t process = 0;        // the operating system's process identifier
  std::string running_job;         // "" when no session runs
  std::string step;                // what the session does: "Fetching allstats.csv"
  std::uint64_t bytes_done = 0;    // of the running transfer
  std::uint64_t bytes_hinted = 0;  // the size its script names, 0 when none; a hint, it may be wrong
  // The lines of "index.sch" in file order, a damaged one once for every job that it still names. Of a long
  // index the first ones; behind them what runs or is not listed yet, wherever it stands.
  std::vector<ScheduledJob> jobs;
  std::uint64_t jobs_left_out = 0;  // lines behind those first ones
  bool operator==(const SchedulerStatus&) const = default;
};

// Whether a scheduler program could be asked.
enum class Reach {
  kAnswered,
  kNotRunning,
  kSilent,  // one is running and gives no answer
};

struct StatusAnswer {
  Reach reach = Reach::kNotRunning;
  std::optional<SchedulerStatus> status;  // when it answered
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
