#pragma once

#include <string>

#include "session/session_view.h"

namespace qvrcom::session {

// The dialog's controls as they stand: passes every change on to the view and remembers what the logic asks
// for later.
class DialogFace {
 public:
  static constexpr const char* kCancel = "Cancel";
  static constexpr const char* kOk = "OK";

  explicit DialogFace(SessionView& view) : view_(view) {}

  SessionView& view() { return view_; }

  void set_info(const std::string& text) { view_.set_info(text); }
  void show_info(bool visible);
  void blink() { show_info(!info_visible_); }
  void set_timer(bool running) { view_.set_timer(running); }

  void set_hint(const std::string& text) { view_.set_hint(text); }
  void show_hint(bool visible) { view_.set_hint_visible(visible); }

  // The button with this caption, enabled and visible.
  void offer(const std::string& caption);
  void enable_button(bool enabled);
  void show_button(bool visible);
  bool button_works() const { return enabled_ && visible_; }
  bool says_ok() const { return caption_ == kOk; }

 private:
  SessionView& view_;
  std::string caption_ = kCancel;
  bool info_visible_ = true;
  bool enabled_ = true;
  bool visible_ = true;
};

}  // namespace qvrcom::session
