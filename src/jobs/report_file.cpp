#include "jobs/report_file.h"

#include <algorithm>

#include "base/fault.h"
#include "jobs/file_helpers.h"

namespace qvrcom::jobs {
namespace {

void write_line(platform::Files& files, const std::string& job_folder, const protocol::ReportLine& line) {
  files.append_line(protocol::report_path(job_folder), protocol::report_line_text(line));
}

}  // namespace

std::optional<protocol::JobReport> report_of(const platform::Files& files, const std::string& job_folder) {
  const std::string path = protocol::report_path(job_folder);
  if (!files.file_exists(path) || files.is_link(path) || files.length(path) > protocol::kReportLimit)
    return std::nullopt;
  return protocol::read_report(files.read(path));
}

void note_taking(platform::Files& files, const std::string& job_folder, const std::string& account,
                 const std::string& result) {
  if (result.empty() || !report_of(files, job_folder)) return;
  write_line(files, job_folder, {protocol::ReportWord::kTaking, account, {}, {}, result});
}

std::string note_taken(platform::Files& files, const std::string& job_folder, const std::string& account,
                       const std::string& result) {
  const auto report = report_of(files, job_folder);
  if (!report) return result;
  const std::vector<std::string> begun = report->begun(account);
  const auto twin = std::find_if(begun.begin(), begun.end(), [&](const std::string& path) {
    return path != result && same_bytes(files, result, path);
  });
  const std::string kept = twin == begun.end() ? result : *twin;
  if (kept != result) files.remove(result);
  const auto fault = base::fault_of([&] {
    write_line(files, job_folder, {protocol::ReportWord::kTaken, account, {}, {}, kept});
  });
  if (!fault) return kept;
  if (kept == result) files.remove(result);
  throw *fault;
}

}  // namespace qvrcom::jobs
