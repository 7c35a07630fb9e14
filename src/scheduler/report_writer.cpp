#include "scheduler/report_writer.h"
#include "jobs/report_file.h"

#include "base/fault.h"

namespace qvrcom::scheduler {

using protocol::ReportWord;

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
  constexpr std::size_t kLineEnd = 2;
  length_ += text.size() + kLineEnd;
  const auto trouble = base::fault_of([&] {
    if (length_ > protocol::kReportLimit) throw base::Fault("It would grow too large", path_);
    files_.append_line(path_, text);
  });
  if (!trouble) return;
  broken_ = true;
  throw base::Fault("The job's report cannot be written, so nothing more is done",
                    trouble->description() + ". " + trouble->detail() + ".");
}

}  // namespace qvrcom::scheduler
