#include "session/session_frame.h"

#include <algorithm>
#include <iterator>

#include "base/fault.h"
#include "environment/names.h"
#include "session/scheduler_watch.h"

namespace qvrcom::session {

// What a known status brings: a box (none after "Completed"), the pending list that the job leaves, and
// the status line.
struct SessionFrame::Ending {
  const char* status;
  const char* pending_list;
  const char* message;
  const char* title;
  platform::Icon icon;
  std::string Outcome::*status_line;
};

const SessionFrame::Ending SessionFrame::kEndings[3] = {
    {"Completed", environment::kCompletedPendingFile, nullptr, nullptr, platform::Icon::kNone,
     &Outcome::completed},
    {"Error", environment::kErrorPendingFile, "Communication error, see JobPilot for details", "ERROR",
     platform::Icon::kError, &Outcome::error},
    {"Cancelled", environment::kCancelledPendingFile, "Communication cancelled from JobPilot", "CANCELLED",
     platform::Icon::kInformation, &Outcome::cancelled},
};

SessionFrame::SessionFrame(const rules::BusinessRulesParts& parts, link::SchedulerLink& link,
                           SessionView& view)
    : session_(parts.session), ui_(parts.ui), rules_(parts), link_(link), face_(view), trap_(parts.ui) {}

void SessionFrame::show_step(const std::string& text) {
  face_.set_info(text);
  ui_.pump_events();
}

void SessionFrame::ClearSessionStatus() {
  session_.run.SessionStatus.clear();
  collected_ = {};
}

void SessionFrame::submit(const std::function<void()>& outcome_routine) {
  if (session_.run.ImmediateRun) {
    run_now(outcome_routine);
  } else {
    run_later();
  }
}

void SessionFrame::run_later() {
  link_.NotifyRePilot(link::SchedulerRequest::kJobsSubmitted);
  if (session_.run.LastSite) face_.set_info("Required Action(s) Scheduled Successfully");
}

void SessionFrame::run_now(const std::function<void()>& outcome_routine) {
  ClearSessionStatus();
  posted_ = false;
  rules_.Copy_Items_From_Scheduler_to_BeProcessed();
  show_step("Communicating with QVR+/RDN");
  rules_.Validate_Index_File();
  if (!session_.run.CancelRequested) {
    require_listed();
    post_and_wait();
  }
  outcome_routine();
}

// A job that the index lost would be waited for without end.
void SessionFrame::require_listed() {
  if (link_.JobListedIn(environment::kIndexFile)) return;
  rules_.Remove_Folder();
  throw base::Fault(
      "Job not listed",
      "index.sch does not hold the job, so the scheduler would never run it. The site's name, "
      "identifier and connection must not contain \";\" or \"^\", and the disk must not be full.");
}

void SessionFrame::post_and_wait() {
  const auto before = link_.posted();
  link_.NotifyScheduler(link::SchedulerRequest::kJobsSubmitted);
  link_.NotifyScheduler(link::SchedulerRequest::kShowSession);
  posted_ = link_.posted() != before;
  WaitForScheduler();
  if (!session_.run.CancelRequested) link_.NotifyScheduler(link::SchedulerRequest::kSessionOver);
}

void SessionFrame::WaitForScheduler() {
  SchedulerWatch watch(link_, face_.view(), session_.job.Name);
  link_.WaitForScheduler([&] { watch.round(); });
}

void SessionFrame::run_outcome(const Outcome& outcome) {
  trap_(outcome.procedure, [&] {
    rules_.Copy_Items_From_Scheduler_to_BeProcessed();
    link_.NotifyScheduler(link::SchedulerRequest::kResultsTaken);
    const auto ending = std::find_if(std::begin(kEndings), std::end(kEndings), [&](const Ending& candidate) {
      return candidate.status == session_.run.SessionStatus;
    });
    if (ending != std::end(kEndings)) {
      finish(*ending, outcome);
    } else if (!posted_) {
      rules_.Remove_Folder();
    }
    rules_.Remove_Index_Line(environment::kIndexFile, session_.job.JobId);
  });
}

void SessionFrame::finish(const Ending& ending, const Outcome& outcome) {
  if (ending.message == nullptr) {
    outcome.process();
  } else {
    ui_.show({.text = ending.message, .title = ending.title, .icon = ending.icon});
  }
  std::string& rest = collected_[static_cast<std::size_t>(&ending - kEndings)];
  rules_.RemoveJobFromList(ending.pending_list, session_.job.JobId, rest);
  rules_.ReWrite_File(ending.pending_list, rest);
  face_.set_info(outcome.*ending.status_line);
  rules_.Remove_Folder();
}

void SessionFrame::ProcessQVRComm(const std::string& operation_name) {
  run_outcome({.procedure = "ProcessQVRComm",
               .completed = operation_name + " Completed",
               .error = operation_name + " Error",
               .cancelled = operation_name + " Cancelled"});
}

}  // namespace qvrcom::session
