#pragma once

#include <string>

namespace qvrcom::session {

// The face of the session dialog: a window on the desktop, lines on a terminal. It holds no logic; each
// member sets one property of the control of that name.
class SessionView {
 public:
  virtual ~SessionView() = default;

  virtual void set_info(const std::string& text) = 0;  // lblInfo
  virtual void set_info_visible(bool visible) = 0;
  virtual void set_hint(const std::string& text) = 0;  // lblCancelCommInfo
  virtual void set_hint_visible(bool visible) = 0;
  virtual void set_cancel(const std::string& caption) = 0;  // cmdCancel
  virtual void set_cancel_enabled(bool enabled) = 0;
  virtual void set_cancel_visible(bool visible) = 0;
  virtual void set_timer(bool running) = 0;  // Timer1, 500 ms; each tick calls frmResponse::Timer1_Timer

  // Hides the dialog and marks it closed. The owner unloads it once the activation routine has returned.
  virtual void close() = 0;
};

}  // namespace qvrcom::session
