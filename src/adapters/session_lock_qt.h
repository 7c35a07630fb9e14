#pragma once

#include <string>

#include "platform/session_lock.h"

namespace qvrcom::adapters {

// A lock file in the run folder; it names its owner and falls with it.
class SessionLockQt : public platform::SessionLock {
 public:
  explicit SessionLockQt(const std::string& run_folder) : file_(run_folder + "/session.lock") {}
  Attempt try_acquire() override;

 private:
  std::string file_;
};

}  // namespace qvrcom::adapters
