#include "jobs/scheduler_files.h"

#include <algorithm>

#include "jobs/report_file.h"
#include "protocol/job_name.h"
#include "protocol/job_report.h"

namespace qvrcom::jobs {

std::vector<std::string> SchedulerFiles::job_folders() const {
  if (!files_.folder_exists(folder())) return {};
  std::vector<std::string> names = files_.list_folders(folder());
  std::erase_if(names, [](const std::string& name) { return !protocol::is_job_name(name); });
  return names;
}

std::optional<protocol::Ending> SchedulerFiles::reported_ending(const std::string& job) const {
  const auto report = report_of(files_, path(job));
  return report ? report->ending() : std::nullopt;
}

void SchedulerFiles::append_line(std::string_view name, std::string_view line) const {
  files_.append_line(path(name), line);
}

void SchedulerFiles::need_index() const {
  const std::string index = path(protocol::kIndexFile);
  if (!files_.is_taken(index)) files_.append(index, {});
}

void SchedulerFiles::replace(std::string_view name, std::string_view text) const {
  const std::string file = path(name);
  const bool same =
      files_.file_exists(file) && files_.length(file) == text.size() && files_.read(file) == text;
  if (!same) files_.replace(file, text);
}

}  // namespace qvrcom::jobs
