#include "jobs/report_file.h"

#include "base/fault.h"

namespace qvrcom::jobs {

std::optional<protocol::JobReport> report_of(const platform::Files& files, const std::string& job_folder) {
  const std::string path = protocol::report_path(job_folder);
  if (!files.file_exists(path) || files.is_link(path) || files.length(path) > protocol::kReportLimit)
    return std::nullopt;
  return protocol::read_report(files.read(path));
}

void note_taken(platform::Files& files, const std::string& job_folder, const std::string& account,
                const std::string& result) {
  if (!report_of(files, job_folder)) return;
  const auto fault = base::fault_of([&] {
    files.append_line(protocol::report_path(job_folder),
                      protocol::report_line_text({protocol::ReportWord::kTaken, account, {}, {}, result}));
  });
  if (!fault) return;
  files.remove(result);
  throw *fault;
}

}  // namespace qvrcom::jobs
