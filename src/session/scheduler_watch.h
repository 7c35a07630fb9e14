#pragma once

#include <string>

#include "link/scheduler_link.h"
#include "session/session_view.h"

namespace qvrcom::session {

// Looks after the scheduler during one wait, so that a wait for a program that has gone can end. Time is
// counted in rounds of the wait: a clock that jumps, or a box that stays open, makes nothing look gone.
class SchedulerWatch {
 public:
  static constexpr int kRoundsBetweenLooks = 3;  // 300 ms
  static constexpr int kRoundsUntilGone = 50;    // 5 s

  SchedulerWatch(const link::SchedulerLink& link, SessionView& view, std::string job_name)
      : link_(link), view_(view), job_name_(std::move(job_name)) {}

  // Once in each round of the wait.
  void round();

 private:
  const link::SchedulerLink& link_;
  SessionView& view_;
  std::string job_name_;
  int rounds_ = 0;
  int rounds_seen_ = 0;  // the round in which the window stood last
  bool told_ = false;
};

}  // namespace qvrcom::session
