#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/scheduler_control.h"

namespace qvrcom::doubles {

// A scheduler program that says `now`, and keeps what it is told to do. Without `now` it is not there, or
// does not answer.
struct ManualScheduler : platform::SchedulerControl {
  platform::StatusAnswer status() override { return {reach(), now}; }
  platform::Reach stop() override {
    const platform::Reach before = reach();
    log.push_back("stop");
    now.reset();
    return before;
  }
  platform::StopOutcome stop_job(const std::string& job) override {
    log.push_back("stop " + job);
    if (now) return outcome;
    return silent ? platform::StopOutcome::kSilent : platform::StopOutcome::kNotRunning;
  }
  platform::Reach reach() const {
    if (now) return platform::Reach::kAnswered;
    return silent ? platform::Reach::kSilent : platform::Reach::kNotRunning;
  }

  std::optional<protocol::SchedulerStatus> now;
  bool silent = false;
  platform::StopOutcome outcome = platform::StopOutcome::kTakenOut;
  std::vector<std::string> log;
};

}  // namespace qvrcom::doubles
