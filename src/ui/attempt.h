#pragma once

#include <exception>
#include <optional>
#include <string>

#include "base/fault.h"
#include "platform/user_interface.h"

namespace qvrcom::ui {

using base::fault_of;

// The fault in one text, for labels.
inline std::string sentence_of(const base::Fault& fault) {
  return fault.detail().empty() ? fault.description() : fault.description() + ": " + fault.detail();
}

// How the pages of the desktop report: runs `body`; after a fault a box says `what` failed and why. Whether
// it went well.
template <class Body>
bool attempt(platform::UserInterface& ui, const std::string& what, Body&& body) {
  const auto fault = fault_of(std::forward<Body>(body));
  if (!fault) return true;
  ui.show({.text = what + "\n" + fault->description(),
           .title = platform::kSuiteTitle,
           .icon = platform::Icon::kWarning,
           .detail = fault->detail()});
  return false;
}

// Asks before something is done that cannot be undone. `act` names it on its button ("Reset Log"); Enter and
// Escape are the other one.
inline bool agreed(platform::UserInterface& ui, const std::string& question, const std::string& act,
                   const std::string& detail = {}, const std::string& refrain = {}) {
  return ui.show({.text = question,
                  .title = platform::kSuiteTitle,
                  .icon = platform::Icon::kWarning,
                  .buttons = platform::Buttons::kOkCancel,
                  .detail = detail,
                  .act = act,
                  .refrain = refrain}) == platform::Button::kOk;
}

}  // namespace qvrcom::ui
