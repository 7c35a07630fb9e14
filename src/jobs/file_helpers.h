#pragma once

#include <string>

#include "environment/files_and_folders.h"
#include "jobs/scheduler_files.h"
#include "platform/files.h"
#include "platform/trap.h"
#include "platform/user_interface.h"

namespace qvrcom::jobs {

// Fault when a job's folder (no backslash at its end) is a link: what lies behind it is no job's.
void refuse_link(const platform::Files& files, const std::string& folder);

// Removes a job's folder with its files: what was fetched, the script, and the report last, so that whatever
// a kill leaves is told of as what it is. Fault when it is missing or a link, and when it holds a folder; its
// files are gone then.
void delete_job_folder(platform::Files& files, const std::string& folder);

// Whether both are plain files, of a size that is read, and hold the same.
bool same_bytes(const platform::Files& files, const std::string& left, const std::string& right);

// Files and folders that the job machinery stands on, and the fixed widths of numbers in file names.
class FileHelpers {
 public:
  FileHelpers(const SchedulerFiles& scheduler, const environment::FilesAndFolders& folders,
              platform::Files& files, platform::UserInterface& ui)
      : scheduler_(scheduler), folders_(folders), files_(files), ui_(ui), trap_(ui) {}

  // The file is in the scheduler folder afterwards, with the content it had; events run once.
  void Create_File(const std::string& file_name);

  // Makes the folders of messages, scheduler, statistics and SAME logs where they are missing, one level
  // each. The first that cannot be made is reported and ends the operation.
  void Create_Folders();

  // Whether the folder named by both texts together exists; nothing is put between them.
  bool ExistedFolder(const std::string& first, const std::string& second);

  // A message number in at least three digits: "7" is "007", "1234" stays.
  std::string ProperMsgNo(const std::string& number);

  // A partition in exactly two digits: "5" is "05", "123" is "23".
  std::string ProperPartID(const std::string& number);

 private:
  const SchedulerFiles& scheduler_;
  const environment::FilesAndFolders& folders_;
  platform::Files& files_;
  platform::UserInterface& ui_;
  platform::Trap trap_;
};

}  // namespace qvrcom::jobs
