#pragma once

#include <optional>
#include <string>

#include "platform/scheduler_control.h"

namespace qvrcom::doubles {

// Another maker's scheduler tells nothing; ours does once `now` is set.
struct MemoryControl : platform::SchedulerControl {
  platform::StatusAnswer status() override {
    ++questions;
    return {now ? platform::Reach::kAnswered : platform::Reach::kNotRunning, now};
  }
  platform::Reach stop() override { return platform::Reach::kNotRunning; }
  platform::StopOutcome stop_job(const std::string&) override { return platform::StopOutcome::kNotRunning; }
  std::optional<protocol::SchedulerStatus> now;
  int questions = 0;
};

}  // namespace qvrcom::doubles
