#pragma once

namespace qvrcom::session {

// The session dialog as its callers know it: shown for the current operation, back when it has gone.
class SessionScreen {
 public:
  virtual ~SessionScreen() = default;

  // Runs `RunValues::CurrentOperation` in the dialog; returns after the dialog has been unloaded.
  virtual void show_modal() = 0;

  // The same for a job that ended while no dialog waited for it: only its outcome is processed. The session
  // values name the job, its site and its operation, and SessionStatus says how it ended.
  virtual void show_late_outcome() = 0;
};

}  // namespace qvrcom::session
