#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/session_lock.h"
#include "platform/user_interface.h"

namespace qvrcom::session {

// One session at a time: whoever is about to change the session's files passes here first.
class SessionGate {
 public:
  // Asked each time another program holds the lock; true tries again. It has to sleep itself.
  using WhenBusy = std::function<bool(const std::string& owner)>;

  // How far the session is that runs; "" when nobody knows.
  using HowFar = std::function<std::string()>;

  // Without `when_busy`, a box says who is busy and how far that is.
  SessionGate(platform::SessionLock& lock, platform::UserInterface& ui, WhenBusy when_busy = {},
              HowFar how_far = {});

  // The hold, to be kept until the session dialog has gone; null when another program keeps the lock.
  std::unique_ptr<platform::SessionLockHold> enter();

  // The same without asking or telling anybody; null when another program has the session.
  std::unique_ptr<platform::SessionLockHold> try_enter() const { return lock_.try_acquire().hold; }

 private:
  platform::SessionLock& lock_;
  WhenBusy when_busy_;
};

}  // namespace qvrcom::session
