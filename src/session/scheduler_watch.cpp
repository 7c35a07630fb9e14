#include "session/scheduler_watch.h"

namespace qvrcom::session {

void SchedulerWatch::round() {
  ++rounds_;
  if (told_) return;
  if (link_.scheduler_missing()) {
    told_ = true;
    view_.scheduler_not_found();
    return;
  }
  if (rounds_ % kRoundsBetweenLooks != 0) return;
  if (link_.scheduler_window_stands()) {
    rounds_seen_ = rounds_;
  } else if (rounds_ - rounds_seen_ >= kRoundsUntilGone) {
    told_ = true;
    view_.scheduler_gone("JobPilot has been gone for 5 seconds, the job " + job_name_ +
                         " will not be answered.");
  }
}

}  // namespace qvrcom::session
