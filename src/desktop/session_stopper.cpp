#include "desktop/session_stopper.h"

#include "ui/attempt.h"
#include "ui/transfer_progress.h"
#include "ui/widget_text.h"

namespace qvrcom::desktop {
namespace {

const char* problem_of(platform::StopOutcome outcome) {
  switch (outcome) {
    case platform::StopOutcome::kUnknownJob:
      return "The scheduler knows no such job any more.";
    case platform::StopOutcome::kNotRunning:
      return "No scheduler is running.";
    case platform::StopOutcome::kSilent:
      return kSchedulerSilent;
    default:
      return nullptr;
  }
}

// "Get Log File, Office1 (job Nov1526120000000): "
std::string what_runs(const base::Session& session) {
  return ui::utf8(ui::qt_text(session.run.CurrentOperation).trimmed()) + ", " + session.site.SiteName +
         " (job " + session.job.Name + "): ";
}

}  // namespace

void stop_job(platform::UserInterface& ui, platform::SchedulerControl& scheduler, const std::string& job) {
  ui::attempt(ui, "Job " + job + " cannot be stopped.", [&] {
    if (const char* problem = problem_of(scheduler.stop_job(job))) throw base::Fault(problem);
  });
}

session::SessionResult SessionStopper::show_modal() {
  session::SessionResult result = screen_.show_modal();
  if (session_.run.CancelRequested) offer_to_stop();
  return result;
}

void SessionStopper::offer_to_stop() {
  const std::string job = session_.job.Name;
  std::optional<requests::SessionProgress> progress;
  base::fault_of([&] { progress = requests::progress_of(scheduler_.status().status, job); });
  if (!progress || !progress->waits_for.empty()) return;
  const bool stop =
      ui::agreed(ui_, "The session is still running in JobPilot. Stop it, too?", "Stop Session",
                 what_runs(session_) + ui::utf8(ui::progress_text(*progress)) +
                     ".\nA session that is stopped is listed as cancelled. One that runs on stands on "
                     "the page \"Jobs\" and can be stopped there.",
                 "Let It Run");
  if (stop) stop_job(ui_, scheduler_, job);
}

}  // namespace qvrcom::desktop
