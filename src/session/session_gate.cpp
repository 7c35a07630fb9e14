#include "session/session_gate.h"

#include <utility>

namespace qvrcom::session {

SessionGate::SessionGate(platform::SessionLock& lock, platform::UserInterface& ui, WhenBusy when_busy,
                         HowFar how_far)
    : lock_(lock), when_busy_(std::move(when_busy)) {
  if (when_busy_) return;
  when_busy_ = [&ui, how_far = std::move(how_far)](const std::string& owner) {
    const std::string place = how_far ? how_far() : std::string();
    ui.show({.text = "Another communication session is running: " + owner + ".",
             .title = platform::kSuiteTitle,
             .icon = platform::Icon::kInformation,
             .detail = (place.empty() ? "" : "It is here: " + place + ". ") +
                       "Wait until it has ended, then try again."});
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
