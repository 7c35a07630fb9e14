#include "session/session_frame.h"

#include <algorithm>
#include <iterator>

#include "protocol/job_lists.h"
#include "protocol/messages.h"
#include "session/file_rescue.h"
#include "session/job_steps.h"
#include "session/scheduler_watch.h"

namespace qvrcom::session {

// What a known status brings, by protocol::Ending: a box (none after "Completed") and the status line.
struct SessionFrame::Farewell {
  const char* message;
  const char* title;
  platform::Icon icon;
  std::string Outcome::*status_line;
};

const SessionFrame::Farewell SessionFrame::kFarewells[3] = {
    {nullptr, nullptr, platform::Icon::kNone, &Outcome::completed},
    {"Communication error, see JobPilot for details", "ERROR", platform::Icon::kError, &Outcome::error},
    {"Communication cancelled from JobPilot", "CANCELLED", platform::Icon::kInformation, &Outcome::cancelled},
};

SessionFrame::SessionFrame(const BusinessRulesParts& parts, SchedulerLink& link,
                           platform::SchedulerControl& control, SessionView& view)
    : parts_(parts),
      session_(parts.session),
      ui_(parts.ui),
      rules_(parts),
      link_(link),
      control_(control),
      face_(view),
      trap_(parts.ui) {}

void SessionFrame::show_step(const std::string& text) {
  face_.set_info(text);
  ui_.pump_events();
}

void SessionFrame::ClearSessionStatus() {
  session_.run.SessionStatus.clear();
  collected_ = {};
}

void SessionFrame::submit(const JobRun& job) {
  if (session_.run.ImmediateRun) {
    run_now(job);
  } else {
    run_later();
  }
}

void SessionFrame::run_later() {
  link_.NotifyRePilot(protocol::SchedulerRequest::kJobsSubmitted);
  if (session_.run.LastSite) face_.set_info("Required Action(s) Scheduled Successfully");
}

void SessionFrame::run_now(const JobRun& job) {
  ClearSessionStatus();
  posted_ = false;
  rules_.Copy_Items_From_Scheduler_to_BeProcessed();
  show_step(job.step);
  rules_.Validate_Index_File();
  if (!session_.run.CancelRequested) {
    require_listed(rules_, link_);
    post_and_wait(job.quiet);
  }
  job.outcome_routine();
}

void SessionFrame::post_and_wait(bool quiet) {
  link_.NotifyScheduler(protocol::SchedulerRequest::kJobsSubmitted);
  posted_ = !link_.scheduler_missing();
  if (!quiet) link_.NotifyScheduler(protocol::SchedulerRequest::kShowSession);
  WaitForScheduler();
  const bool tells_end = !quiet && !session_.run.CancelRequested;
  if (tells_end) link_.NotifyScheduler(protocol::SchedulerRequest::kSessionOver);
}

void SessionFrame::WaitForScheduler() {
  SchedulerWatch watch(link_, control_, face_.view(), session_.job.Name);
  link_.WaitForScheduler([&] { watch.round(); });
}

void SessionFrame::run_outcome(const Outcome& outcome) {
  trap_(outcome.procedure, [&] {
    rules_.Copy_Items_From_Scheduler_to_BeProcessed();
    if (!is_late_ || link_.scheduler_window_stands())
      link_.NotifyScheduler(protocol::SchedulerRequest::kResultsTaken);
    const auto list = std::find_if(
        protocol::kResultLists.begin(), protocol::kResultLists.end(),
        [&](const protocol::ResultList& each) { return each.status == session_.run.SessionStatus; });
    if (list != protocol::kResultLists.end()) {
      finish(*list, outcome);
    } else if (!posted_ && !outcome.keeps_folder) {
      rules_.Remove_Folder();
    }
    rules_.Remove_Index_Line(protocol::kIndexFile, session_.job.JobId);
  });
  if (!session_.run.SessionStatus.empty()) rules_.clear_password(session_.job.Folder);
}

void SessionFrame::finish(const protocol::ResultList& list, const Outcome& outcome) {
  const Farewell& farewell = kFarewells[static_cast<std::size_t>(list.ending)];
  Remainder remainder{.undecoded = true, .what = RescueWhat::kDeleted};
  if (farewell.message == nullptr) {
    const auto fault = base::fault_of([&] { remainder = outcome.process(); });
    if (fault) throw base::Fault(fault->description(), fault->detail() + kept_files());
  } else {
    ui_.show({.text = farewell.message, .title = farewell.title, .icon = farewell.icon});
  }
  const bool is_safe = !remainder.undecoded || rescue(remainder);
  const bool is_over = is_safe && (!remainder.keeps_job || is_late_);
  if (is_over) forget(list);
  const std::string& status_line = outcome.*farewell.status_line;
  if (!status_line.empty()) face_.set_info(status_line);
  if (is_over && !outcome.keeps_folder) rules_.Remove_Folder();
}

// Behind the detail of a fault that leaves the job unfinished.
std::string SessionFrame::kept_files() const {
  if (is_late_ || !parts_.files.folder_exists(session_.job.Folder)) return {};
  return " What the device sent is kept in " + parts_.files.native(session_.job.Folder) +
         ". When the cause is mended, \"qvrcomctl jobs process " + session_.job.Name +
         "\" or the page \"Jobs\" finishes the job.";
}

// False when it failed, which has been reported.
bool SessionFrame::rescue(const Remainder& remainder) {
  // A job that nobody waits for is over once its files are where people find them.
  const bool all = is_late_ && remainder.keeps_job;
  return trap_("Rescue", [&] {
    bring_to_safety(parts_, session_.job.Name, all ? RescueWhat::kEverything : remainder.what,
                    remainder.accounts);
    return true;
  });
}

void SessionFrame::forget(const protocol::ResultList& list) {
  std::string& rest = collected_[static_cast<std::size_t>(list.ending)];
  rules_.RemoveJobFromList(list.pending_file, session_.job.JobId, rest);
  rules_.ReWrite_File(list.pending_file, rest);
}

Outcome SessionFrame::name_first(const std::string& procedure, const std::string& operation_name) {
  return {.procedure = procedure,
          .completed = operation_name + " Completed",
          .error = operation_name + " Error",
          .cancelled = operation_name + " Cancelled"};
}

void SessionFrame::ProcessQVRComm(const std::string& operation_name) {
  run_outcome(name_first("ProcessQVRComm", operation_name));
}

}  // namespace qvrcom::session
