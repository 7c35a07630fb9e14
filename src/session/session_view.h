#pragma once

#include <memory>
#include <string>
#include <vector>

namespace qvrcom::session {

class frmResponse;

// The CSV that one partition's statistics became.
struct PartitionFile {
  int partition = 0;
  std::string file;  // suite path
  bool operator==(const PartitionFile&) const = default;
};

// What a run of the session dialog has brought, beside the session values.
struct SessionResult {
  std::vector<PartitionFile> partition_files;  // every CSV of a run over all partitions
  std::string same_log;                        // suite path of the SAME log that was filed, or ""
  std::string missing;                         // sentence: why a run that ended well left no result; or ""
};

// The face of the session dialog: a window on the desktop, lines on a terminal. It holds no logic; each
// set_ member sets one property of the control of that name.
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

  // During a wait: the request was dropped because no scheduler came up (the box has been shown). At most
  // once a wait. Where nobody can press Cancel, press it here (frmResponse::cmdCancel_Click).
  virtual void scheduler_not_found() = 0;

  // During a wait: the scheduler's window has been away for five seconds. `sentence` says so, with the job's
  // name. At most once a wait. Where nobody can press Cancel, press it here.
  virtual void scheduler_gone(const std::string& sentence) = 0;
};

// A view with a life of its own, as `SessionRun` drives it.
class SessionWindow : public SessionView {
 public:
  // Puts the dialog on screen, calls dialog.Form_Activate() once it stands there (and again whenever another
  // dialog of the library that lay over it has closed), and comes back when close() has been called and every
  // handler of `dialog` has returned. A terminal calls Form_Activate() and then presses the button.
  // The window's close box is cmdCancel_Click while the button is enabled and visible, and nothing otherwise.
  virtual void show_modal(frmResponse& dialog) = 0;
};

class SessionWindows {
 public:
  virtual ~SessionWindows() = default;
  virtual std::unique_ptr<SessionWindow> make() = 0;
};

// The session dialog as its callers know it: shown for the current operation, back when it has gone.
class SessionScreen {
 public:
  virtual ~SessionScreen() = default;

  // Runs `RunValues::CurrentOperation` in the dialog; returns after the dialog has been unloaded.
  virtual SessionResult show_modal() = 0;

  // The same for a job that ended while no dialog waited for it: only its outcome is processed. The session
  // values name the job, its site and its operation, and SessionStatus says how it ended.
  virtual SessionResult show_late_outcome() = 0;
};

}  // namespace qvrcom::session
