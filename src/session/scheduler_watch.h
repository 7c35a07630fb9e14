#pragma once

#include <string>

#include "platform/scheduler_control.h"
#include "session/scheduler_link.h"
#include "session/session_view.h"

namespace qvrcom::session {

// Looks after the scheduler during one wait, so that a wait that can have no end gets one: the program has
// gone, or it cannot list the job's end, or does not have the job. Time is counted in rounds of the wait: a
// clock that jumps, or a box that stays open, makes nothing look gone.
class SchedulerWatch {
 public:
  static constexpr int kRoundsBetweenLooks = 3;       // 300 ms
  static constexpr int kRoundsUntilGone = 50;         // 5 s
  static constexpr int kRoundsBetweenQuestions = 20;  // 2 s
  static constexpr int kRoundsAfterSilence = 100;     // 10 s: a question that gets no answer takes its time
  static constexpr int kQuestionsUntilHopeless = 3;   // an answer may be on its way

  // `control` is asked about the job; another maker's scheduler never answers.
  SchedulerWatch(const SchedulerLink& link, platform::SchedulerControl& control, SessionView& view,
                 std::string job_name)
      : link_(link), control_(control), view_(view), job_name_(std::move(job_name)) {}

  // Once in each round of the wait.
  void round();

 private:
  void look();
  void ask();
  void end(const std::string& sentence);

  const SchedulerLink& link_;
  platform::SchedulerControl& control_;
  SessionView& view_;
  std::string job_name_;
  int rounds_ = 0;
  int rounds_seen_ = 0;  // the round in which the window stood last
  int next_question_ = kRoundsBetweenQuestions;
  int hopeless_ = 0;  // questions in a row whose answer leaves no hope
  bool told_ = false;
};

}  // namespace qvrcom::session
