#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "protocol/job_report.h"

namespace qvrcom::scheduler {

// The report of a job while its session goes on, docs/formats/report.md. Each line is on the disk when its
// call returns. What cannot be written is a Fault, after which the session must not go on.
class ReportWriter {
 public:
  // `job_folder` without a backslash at its end.
  ReportWriter(platform::Files& files, const std::string& job_folder)
      : files_(files), path_(protocol::report_path(job_folder)) {}

  // A new report in place of an old one. Fault when the old one tells that the device may have been changed:
  // it and the files that it names are all there is of what was there.
  void begin();

  void write(const protocol::ReportLine& line);

  // Whether the device was, or may have been, asked to delete or to store something in this session.
  bool changed() const { return changed_; }

  bool begun() const { return begun_; }
  // Whether a line is missing.
  bool broken() const { return broken_; }

 private:
  void append(std::string_view text);

  platform::Files& files_;
  const std::string path_;
  std::size_t length_ = 0;
  bool begun_ = false;
  bool changed_ = false;
  bool broken_ = false;
};

}  // namespace qvrcom::scheduler
