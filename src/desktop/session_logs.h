#pragma once

#include <string>

#include "environment/files_and_folders.h"
#include "platform/files.h"
#include "platform/user_interface.h"

class QWidget;

namespace qvrcom::desktop {

// The logs that the scheduler writes, one a job.
class SessionLogs {
 public:
  SessionLogs(platform::UserInterface& ui, const platform::Files& files,
              const environment::FilesAndFolders& folders)
      : ui_(ui), files_(files), folders_(folders) {}

  // Shows the job's log in a window over `parent`, or says why there is none. Back when that has closed.
  void show(const std::string& job_name, QWidget* parent) const;

 private:
  std::string read(const std::string& path) const;

  platform::UserInterface& ui_;
  const platform::Files& files_;
  const environment::FilesAndFolders& folders_;
};

}  // namespace qvrcom::desktop
