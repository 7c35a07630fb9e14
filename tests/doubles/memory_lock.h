#pragma once

#include <memory>
#include <string>

#include "platform/session_lock.h"

namespace qvrcom::doubles {

// The session lock of one program, and of another one that has `owner` as its name.
struct MemoryLock : platform::SessionLock {
  struct Hold : platform::SessionLockHold {
    explicit Hold(bool& flag) : held(flag) { held = true; }
    ~Hold() override { held = false; }
    bool& held;
  };
  Attempt try_acquire() override {
    if (!owner.empty()) return {nullptr, owner};
    return {std::make_unique<Hold>(held), {}};
  }
  std::string owner;  // another program
  bool held = false;
};

}  // namespace qvrcom::doubles
