#include "cli/transfer_text.h"

namespace qvrcom::cli {

std::string transfer_text(const std::optional<platform::SchedulerStatus>& status,
                          const std::string& job_name) {
  if (!status || job_name.empty() || status->running_job != job_name) return {};
  std::string text = status->step + ", " + std::to_string(status->bytes_done);
  if (status->bytes_hinted >= status->bytes_done && status->bytes_hinted > 0)
    text += " of about " + std::to_string(status->bytes_hinted);
  return text + " bytes";
}

}  // namespace qvrcom::cli
