#pragma once

namespace qvrcom::link {

// The session dialog as its callers know it: shown for the current operation, back when it has gone.
class SessionScreen {
 public:
  virtual ~SessionScreen() = default;

  // Runs `RunValues::CurrentOperation` in the dialog; returns after the dialog has been unloaded.
  virtual void show_modal() = 0;
};

}  // namespace qvrcom::link
