#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "adapters/plain_file.h"
#include "platform/session_lock.h"

namespace qvrcom::adapters {

// What one program at a time holds, by way of a file. The kernel lets go of it when its holder ends, however
// that ends, and programs that the holder starts do not inherit it. What stands in the file only says who has
// it; torn, empty or from another machine, it keeps nobody out. The file itself stays where it is: a lock on
// one that has been removed would be no lock.
class FileLock {
 public:
  // Nothing when somebody else holds it, be it within this program. Fault when the file (a native path)
  // cannot be made, or no plain file lies there.
  static std::optional<FileLock> try_take(const std::string& path);

  // The same, but waits for others; Fault, as `what` that could not be done, when they take longer than that.
  static FileLock take(const std::string& path, const char* what, std::chrono::milliseconds longest);

  // Who holds the lock now: "qvrcom (process 4711)"; "another program" when that cannot be told.
  static std::string owner(const std::string& path);

  ~FileLock();
  FileLock(FileLock&&) noexcept = default;
  FileLock& operator=(const FileLock&) = delete;

 private:
  explicit FileLock(Descriptor file) : file_(std::move(file)) {}

  Descriptor file_;
};

// The session's lock, "session.lock" in the scheduler folder: whoever works there, from whatever run folder,
// finds it.
class SessionLockFile : public platform::SessionLock {
 public:
  // `folder` answers with the native path of the scheduler folder, which must be there when the lock is
  // taken.
  explicit SessionLockFile(std::function<std::string()> folder) : folder_(std::move(folder)) {}
  Attempt try_acquire() override;

 private:
  std::function<std::string()> folder_;
};

}  // namespace qvrcom::adapters
