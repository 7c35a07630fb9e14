#include "session/scheduler_watch.h"

#include <algorithm>

namespace qvrcom::session {
namespace {

using protocol::JobState;

// Why the job that the scheduler was told of will not be answered, as far as it tells; "" while it may be.
std::string hopeless_reason(const protocol::SchedulerStatus& status, const std::string& job_name) {
  if (status.running_job == job_name) return {};
  const auto job = std::find_if(status.jobs.begin(), status.jobs.end(),
                                [&](const protocol::ScheduledJob& each) { return each.name == job_name; });
  if (job == status.jobs.end())
    return status.jobs_left_out > 0 ? "" : "JobPilot does not have the job " + job_name + ".";
  if (!job->reason.empty()) return "JobPilot says of the job " + job_name + ": " + job->reason;
  if (job->state == JobState::kFinished)
    return "JobPilot has ended the job " + job_name + ", but no result list holds it.";
  return {};
}

}  // namespace

void SchedulerWatch::round() {
  ++rounds_;
  if (told_) return;
  if (link_.scheduler_missing()) {
    told_ = true;
    view_.scheduler_not_found();
    return;
  }
  if (rounds_ % kRoundsBetweenLooks == 0) look();
  if (!told_ && rounds_ >= next_question_) ask();
}

void SchedulerWatch::look() {
  if (link_.scheduler_window_stands()) {
    rounds_seen_ = rounds_;
  } else if (rounds_ - rounds_seen_ >= kRoundsUntilGone) {
    end("JobPilot has been gone for 5 seconds, the job " + job_name_ + " will not be answered.");
  }
}

void SchedulerWatch::ask() {
  const platform::StatusAnswer answer = control_.status();
  next_question_ = rounds_ + (answer.status ? kRoundsBetweenQuestions : kRoundsAfterSilence);
  if (!answer.status) return;
  const std::string reason = hopeless_reason(*answer.status, job_name_);
  hopeless_ = reason.empty() ? 0 : hopeless_ + 1;
  if (hopeless_ == kQuestionsUntilHopeless) end(reason + " It will not be answered.");
}

void SchedulerWatch::end(const std::string& sentence) {
  told_ = true;
  view_.scheduler_gone(sentence);
}

}  // namespace qvrcom::session
