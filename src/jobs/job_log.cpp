#include "jobs/job_log.h"

#include "protocol/job_log.h"
#include "protocol/job_name.h"

namespace qvrcom::jobs {

void write_job_log(platform::Files& files, const platform::Clock& clock, const std::string& logs_folder,
                   const std::string& job_name, std::string_view sentence) {
  if (!files.folder_exists(logs_folder)) files.make_folder(logs_folder);
  files.append(protocol::log_path(logs_folder, job_name), protocol::log_line(clock.now(), sentence));
}

std::string reason_of(const platform::Files& files, const std::string& logs_folder,
                      const std::string& job_name) {
  const std::string path = protocol::log_path(logs_folder, job_name);
  if (!protocol::is_job_name(job_name) || !files.file_exists(path)) return {};
  return protocol::last_reason(files.read(path));
}

}  // namespace qvrcom::jobs
