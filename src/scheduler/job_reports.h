#pragma once

#include <cstddef>
#include <optional>
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

// What a session of an earlier run of this program has left in the job's folder.
struct EarlierSession {
  protocol::Ending ending;
  std::string reason;  // a full sentence; "" when there is none, or the job's log has it
  bool ended = false;  // its report says so itself
};

// Nothing when there was no such session, or it has changed nothing: then the job may be run from its first
// line. `folder` is the job's, without a backslash at its end. Fault when the report cannot be looked at.
std::optional<EarlierSession> earlier_session(const platform::Files& files, const std::string& folder);

// Ends the reports of sessions that were cut off after they may have changed a device: as an error. A job
// whose dialog was left has no index line, so its report alone tells that it was cut off.
void end_cut_reports(platform::Files& files, const std::string& scheduler_folder);

}  // namespace qvrcom::scheduler
