#include "session/session_gate.h"

#include <utility>

namespace qvrcom::session {

SessionGate::SessionGate(platform::SessionLock& lock, platform::UserInterface& ui, WhenBusy when_busy)
    : lock_(lock), when_busy_(std::move(when_busy)) {
  if (when_busy_) return;
  when_busy_ = [&ui](const std::string& owner) {
    ui.show({.text = "Another communication session is running: " + owner + ".",
             .title = platform::kSuiteTitle,
             .icon = platform::Icon::kInformation,
             .detail = "Wait until it has ended, then try again."});
    return false;
  };
}

std::unique_ptr<platform::SessionLockHold> SessionGate::enter() {
  for (;;) {
    auto attempt = lock_.try_acquire();
    if (attempt.hold || !when_busy_(attempt.owner)) return std::move(attempt.hold);
  }
}

}  // namespace qvrcom::session
