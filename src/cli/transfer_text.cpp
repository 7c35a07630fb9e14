#include "cli/transfer_text.h"

#include "control/session_progress.h"

namespace qvrcom::cli {

std::string transfer_text(const std::optional<platform::SchedulerStatus>& status,
                          const std::string& job_name) {
  const auto progress = control::progress_of(status, job_name);
  if (!progress) return {};
  std::string text = progress->waits_for.empty() ? "" : "waits for " + progress->waits_for + ", ";
  text += progress->step + ", " + std::to_string(progress->bytes_done);
  if (progress->bytes_hinted >= progress->bytes_done && progress->bytes_hinted > 0)
    text += " of about " + std::to_string(progress->bytes_hinted);
  return text + " bytes";
}

}  // namespace qvrcom::cli
