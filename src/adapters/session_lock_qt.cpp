#include "adapters/session_lock_qt.h"

#include <QLockFile>
#include <chrono>

#include "adapters/lock_fault.h"

namespace qvrcom::adapters {
namespace {

struct Hold : platform::SessionLockHold {
  explicit Hold(const std::string& path) : file(QString::fromStdString(path)) {
    file.setStaleLockTime(std::chrono::milliseconds(0));  // age proves nothing; a dead owner does
  }
  QLockFile file;
};

std::string owner_of(const QLockFile& file) {
  qint64 process = 0;
  QString host;
  QString program;
  if (!file.getLockInfo(&process, &host, &program)) return "another program";
  return program.toStdString() + " (process " + std::to_string(process) + ")";
}

}  // namespace

platform::SessionLock::Attempt SessionLockQt::try_acquire() {
  auto hold = std::make_unique<Hold>(file_);
  if (hold->file.tryLock(std::chrono::milliseconds(0))) return {std::move(hold), {}};
  if (hold->file.error() == QLockFile::LockFailedError) return {nullptr, owner_of(hold->file)};
  fail_lock(hold->file, file_);
}

}  // namespace qvrcom::adapters
