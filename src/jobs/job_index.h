#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/session_values.h"
#include "jobs/file_helpers.h"
#include "jobs/scheduler_files.h"
#include "platform/clock.h"
#include "platform/trap.h"

namespace qvrcom::jobs {

// The job index "index.sch" (and "reschedule.sch"), docs/formats/index.md. File names are bare names in the
// scheduler folder. Each operation leaves the bytes that doing it line by line in place would leave; a file
// whose bytes stay the same is not written.
class JobIndex {
 public:
  JobIndex(const base::SiteValues& site, base::JobValues& job, const SchedulerFiles& scheduler,
           FileHelpers& helpers, platform::Clock& clock, platform::UserInterface& ui)
      : site_(site), job_(job), scheduler_(scheduler), helpers_(helpers), clock_(clock), trap_(ui) {}

  // Appends the job's line to "index.sch" (a job that is rescheduled: "reschedule.sch"), keeps it as `JobId`
  // and sorts the file.
  void Write_Index(const std::string& site_name, const std::string& site_id, const std::string& description,
                   const std::string& start_date, const std::string& interval, const std::string& period);

  // Sorts the lines by their bytes and drops the empty ones; blanks at both ends of the whole are removed.
  void Sort_File(const std::string& file_name);

  // The file holds `text` and CR LF afterwards.
  void ReWrite_File(const std::string& file_name, const std::string& text);

  // Removes every line that equals `line`, letter case ignored, then sorts "index.sch", whatever the file
  // was. Fault when the file is missing.
  void Remove_Index_Line(const std::string& file_name, const std::string& line);

  // Remove_Index_Line on "index.sch" for each of `lines` in turn, with one reading and one writing.
  void remove_index_lines(const std::vector<std::string>& lines);

  // Removes the lines of "index.sch" whose job folder is gone.
  void Validate_Index_File();

  // Name of the folder that holds the line's script. A text that is no index line answers with what it has
  // in that place, or with itself.
  static std::string Get_Folder(std::string_view line);

  // The non-empty lines of a file, in its order; `found` becomes true when there are any and stays what it is
  // otherwise. Fault when the file is missing.
  void Read_Lines(const std::string& file_name, std::vector<std::string>& lines, bool& found);

  void Append_Line(const std::string& file_name, const std::string& line);

 private:
  const base::SiteValues& site_;
  base::JobValues& job_;
  const SchedulerFiles& scheduler_;
  FileHelpers& helpers_;
  platform::Clock& clock_;
  platform::Trap trap_;
};

}  // namespace qvrcom::jobs
