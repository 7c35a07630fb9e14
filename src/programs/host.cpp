#include "programs/host.h"

#include <sys/stat.h>

#include <csignal>

#include "adapters/plain_file.h"
#include "base/fault.h"

namespace qvrcom::programs {
namespace {

// Sockets and locks say who is running what: nobody else has business here.
adapters::Layout with_run_folder(adapters::Layout layout) {
  if (!adapters::make_folders(layout.run_folder) || ::chmod(layout.run_folder.c_str(), 0700) != 0) {
    throw base::Fault(
        base::kPermissionDenied,
        "The folder \"" + layout.run_folder + "\" cannot be made. Check the rights of the folder above it.");
  }
  return layout;
}

}  // namespace

Host::Host()
    : layout(with_run_folder(adapters::Layout::from_environment())),
      machine(layout.config_folder, layout.root),
      folders(machine, files),
      session_lock([this] { return scheduler_folder(); }) {
  // A file that grows beyond what the shell allows is told of like a full disk, and no end without a word.
  std::signal(SIGXFSZ, SIG_IGN);
}

std::string Host::scheduler_folder() const {
  std::string folder = files.native(folders.GetSchedulerFolder());
  folder.pop_back();
  return folder;
}

}  // namespace qvrcom::programs
