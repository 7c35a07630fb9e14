#include "programs/host.h"

#include <QDir>
#include <QFile>

#include "base/fault.h"

namespace qvrcom::programs {
namespace {

// Sockets and locks say who is running what: nobody else has business here.
adapters::Layout with_run_folder(adapters::Layout layout) {
  const QString folder = QString::fromStdString(layout.run_folder);
  const auto owner_only = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
  if (!QDir().mkpath(folder) || !QFile::setPermissions(folder, owner_only)) {
    throw base::Fault(
        base::kPermissionDenied,
        "The folder \"" + layout.run_folder + "\" cannot be made. Check the rights of the folder above it.");
  }
  return layout;
}

}  // namespace

Host::Host()
    : layout(with_run_folder(adapters::Layout::from_environment())),
      machine(layout.config_folder),
      session_lock(layout.run_folder),
      folders(machine, files) {}

}  // namespace qvrcom::programs
