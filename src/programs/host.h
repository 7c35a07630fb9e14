#pragma once

#include <memory>
#include <string>

#include "adapters/file_lock.h"
#include "adapters/files_posix.h"
#include "adapters/layout.h"
#include "adapters/machine_files.h"
#include "adapters/programs_qt.h"
#include "adapters/system_clock.h"
#include "environment/files_and_folders.h"

namespace qvrcom::programs {

// The real machine under every program of the suite: made once, in main(), after the QCoreApplication.
class Host {
 public:
  // Fault when the layout or the machine's configuration cannot be used. Makes the run folder.
  Host();

  const adapters::Layout layout;
  adapters::FilesPosix files;
  adapters::SystemClock clock;
  adapters::ProgramsQt programs;
  adapters::MachineFiles machine;
  environment::FilesAndFolders folders;
  adapters::SessionLockFile session_lock;

  // Native path without a slash at its end.
  std::string scheduler_folder() const;
};

}  // namespace qvrcom::programs
