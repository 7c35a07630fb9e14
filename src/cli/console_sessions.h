#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "cli/console.h"
#include "platform/clock.h"
#include "platform/user_interface.h"
#include "session/session_view.h"

namespace qvrcom::cli {

// The session dialog on a terminal: its status line is the terminal's, its button is pressed by a signal and,
// when the run has ended, by itself.
class ConsoleSessions : public session::SessionWindows {
 public:
  ConsoleSessions(Console& console, platform::UserInterface& ui, platform::Clock& clock)
      : console_(console), ui_(ui), clock_(clock) {}

  std::unique_ptr<session::SessionWindow> make() override;

  // As the Cancel button of the dialog that is open, if it can be pressed; remembered in any case.
  void cancel();
  bool cancelled() const { return cancelled_; }

  // Whether a session ended because no scheduler came up.
  bool scheduler_missing() const { return scheduler_missing_; }

  // Asked now and then for what stands behind the text of the status line; "" for nothing.
  struct Progress {
    std::function<std::string()> own;     // while a session's dialog is open
    std::function<std::string()> others;  // while another program has the session
  };
  void watch(Progress progress) { progress_ = std::move(progress); }

  // Says who has the session and lets a moment pass; false after a cancel.
  bool wait_for(const std::string& owner);

 private:
  class Window;
  void show_status();
  void look();

  Console& console_;
  platform::UserInterface& ui_;
  platform::Clock& clock_;
  Window* open_ = nullptr;
  Progress progress_{[] { return std::string(); }, [] { return std::string(); }};
  std::string info_;
  std::string behind_;     // what `progress_` said last
  int rounds_waited_ = 0;  // for another program
  bool cancelled_ = false;
  bool scheduler_missing_ = false;
};

}  // namespace qvrcom::cli
