#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qvrcom::protocol {

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

}  // namespace qvrcom::protocol
