#include "requests/session_progress.h"

#include <algorithm>

namespace qvrcom::requests {
namespace {

const protocol::ScheduledJob* find_job(const protocol::SchedulerStatus& status, const std::string& name) {
  const auto found = std::find_if(status.jobs.begin(), status.jobs.end(),
                                  [&](const protocol::ScheduledJob& job) { return job.name == name; });
  return found == status.jobs.end() ? nullptr : &*found;
}

}  // namespace

std::optional<SessionProgress> progress_of(const std::optional<protocol::SchedulerStatus>& status,
                                           const std::string& job_name) {
  if (!status || job_name.empty() || status->running_job.empty()) return std::nullopt;
  const protocol::ScheduledJob* running = find_job(*status, status->running_job);
  SessionProgress progress{{},
                           running == nullptr ? std::string() : running->description,
                           status->step,
                           status->bytes_done,
                           status->bytes_hinted};
  if (status->running_job == job_name) return progress;
  const protocol::ScheduledJob* own = find_job(*status, job_name);
  if (own == nullptr || own->state != protocol::JobState::kWaiting) return std::nullopt;
  progress.waits_for = status->running_job;
  return progress;
}

std::string progress_line(const std::optional<SessionProgress>& progress) {
  if (!progress) return {};
  std::string text = progress->waits_for.empty() ? "" : "waits for " + progress->waits_for + ", ";
  text += progress->step + ", " + std::to_string(progress->bytes_done);
  if (progress->bytes_hinted >= progress->bytes_done && progress->bytes_hinted > 0)
    text += " of about " + std::to_string(progress->bytes_hinted);
  return text + " bytes";
}

std::string running_line(const std::optional<protocol::SchedulerStatus>& status) {
  return status ? progress_line(progress_of(status, status->running_job)) : std::string();
}

}  // namespace qvrcom::requests
