#pragma once

#include <functional>

#include "session/frm_response.h"
#include "session/session_view.h"

namespace qvrcom::session {

// The session dialog from its making to its unloading, on whatever windows the program has.
class SessionRun : public SessionScreen {
 public:
  SessionRun(const SessionParts& parts, SessionWindows& windows) : parts_(parts), windows_(windows) {}

  SessionResult show_modal() override;
  SessionResult show_late_outcome() override;

 private:
  SessionResult show(const std::function<void(frmResponse&)>& prepare);

  SessionParts parts_;
  SessionWindows& windows_;
};

}  // namespace qvrcom::session
