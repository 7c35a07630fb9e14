#include "scheduler/job_reports.h"

#include "base/fault.h"
#include "base/text.h"
#include "jobs/report_file.h"

namespace qvrcom::scheduler {

using protocol::Ending;
using protocol::ReportWord;

namespace {

constexpr const char* kCutOffReason =
    "The session was cut off after the device had been told to delete or store something. The job is not run "
    "again; its files are kept.";
constexpr const char* kBadReportReason =
    "The job has run before, and its report cannot be read. The job is not run again; its files are kept.";

}  // namespace

void ReportWriter::begin() {
  const auto old = jobs::report_of(files_, path_.substr(0, path_.rfind('\\')));
  if (old && old->has_changed())
    throw base::Fault("The job has changed the device before, and is not begun again",
                      "Its report is " + files_.native(path_) + ".");
  // A file of its own name on the disk, not the old one's, and not what a link leads to.
  if (files_.file_exists(path_) || files_.is_link(path_)) files_.remove(path_);
  begun_ = true;
  append(protocol::report_head());
}

void ReportWriter::write(const protocol::ReportLine& line) {
  changed_ |= line.word == ReportWord::kDeleting || line.word == ReportWord::kStoring;
  append(protocol::report_line_text(line));
}

void ReportWriter::append(std::string_view text) {
  length_ += text.size() + base::kCrLf.size();
  const auto trouble = base::fault_of([&] {
    if (length_ > protocol::kReportLimit) throw base::Fault("It would grow too large", path_);
    files_.append_line(path_, text);
  });
  if (!trouble) return;
  broken_ = true;
  throw base::Fault("The job's report cannot be written, so nothing more is done",
                    trouble->description() + ". " + trouble->detail() + ".");
}

std::optional<EarlierSession> earlier_session(const platform::Files& files, const std::string& folder) {
  const std::string path = protocol::report_path(folder);
  if (files.is_link(folder) || !files.file_exists(path)) return std::nullopt;
  const auto report = jobs::report_of(files, folder);
  if (!report) {
    // Cut off within its first line: nothing had been done yet.
    const std::size_t first_line = protocol::report_head().size() + base::kCrLf.size();
    if (!files.is_link(path) && files.length(path) < first_line) return std::nullopt;
    return EarlierSession{Ending::kError, kBadReportReason};
  }
  if (const auto ending = report->ending()) return EarlierSession{*ending, {}, true};
  if (report->has_changed()) return EarlierSession{Ending::kError, kCutOffReason};
  return std::nullopt;
}

void end_cut_reports(platform::Files& files, const std::string& scheduler_folder) {
  for (const std::string& name : files.list_folders(scheduler_folder)) {
    const std::string folder = scheduler_folder + name;
    base::fault_of([&] {
      const auto report = jobs::report_of(files, folder);
      if (!report || !report->has_changed() || report->ending()) return;
      files.append_line(protocol::report_path(folder),
                        protocol::report_line_text({ReportWord::kEnded, {}, {}, {}, "error"}));
    });
  }
}

}  // namespace qvrcom::scheduler
