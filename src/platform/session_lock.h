#pragma once

#include <memory>
#include <optional>
#include <string>

namespace qvrcom::platform {

// Whoever holds the lock, for as long as the object lives.
struct SessionLockHold {
  virtual ~SessionLockHold() = default;
};

// One communication session at a time on a machine: the programs of the suite share the scheduler folder.
class SessionLock {
 public:
  virtual ~SessionLock() = default;

  struct Attempt {
    std::unique_ptr<SessionLockHold> hold;  // null when another program has it
    std::string owner;                      // then: its name and process identifier, "qvrcom (process 4711)"
  };
  virtual Attempt try_acquire() = 0;
};

}  // namespace qvrcom::platform
