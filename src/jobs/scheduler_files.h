#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/session_values.h"
#include "environment/files_and_folders.h"
#include "platform/files.h"
#include "protocol/job_lists.h"

namespace qvrcom::jobs {

// The text files of the scheduler folder, by bare name. The folder is resolved when it is first used.
class SchedulerFiles {
 public:
  SchedulerFiles(base::RunValues& run, const environment::FilesAndFolders& folders, platform::Files& files)
      : run_(run), folders_(folders), files_(files) {}

  // Ends in a backslash.
  const std::string& folder() const { return environment::scheduler_folder(run_, folders_); }
  std::string path(std::string_view name) const { return folder() + std::string(name); }

  // Fault when the file is missing.
  std::string read(std::string_view name) const { return files_.read(path(name)); }
  // "" when nothing lies there.
  std::string read_or_empty(std::string_view name) const { return files_.read_or_empty(path(name)); }

  // The folders of jobs: those whose names a job can have.
  std::vector<std::string> job_folders() const;
  // As the job's report says; nothing when it says nothing.
  std::optional<protocol::Ending> reported_ending(const std::string& job) const;

  // Adds a line of its own to the end of the file, also where the last one lacks its end.
  void append_line(std::string_view name, std::string_view line) const;

  // The job index is there afterwards, an empty one when it was missing: it lists no job.
  void need_index() const;

  // The file holds exactly `text` afterwards; a file that holds it already is not touched.
  void replace(std::string_view name, std::string_view text) const;

 private:
  base::RunValues& run_;
  const environment::FilesAndFolders& folders_;
  platform::Files& files_;
};

}  // namespace qvrcom::jobs
