#include "jobs/scheduler_files.h"

#include "base/text.h"

namespace qvrcom::jobs {

std::string SchedulerFiles::read_or_empty(std::string_view name) const {
  const std::string file = path(name);
  return files_.file_exists(file) ? files_.read(file) : std::string{};
}

void SchedulerFiles::print(std::string_view name, std::string_view text) const {
  files_.append(path(name), std::string(text).append(base::kCrLf));
}

void SchedulerFiles::replace(std::string_view name, std::string_view text) const {
  const std::string file = path(name);
  const bool same =
      files_.file_exists(file) && files_.length(file) == text.size() && files_.read(file) == text;
  if (!same) files_.replace(file, text);
}

}  // namespace qvrcom::jobs
