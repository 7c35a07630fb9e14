#pragma once

#include <string>

namespace qvrcom::platform {

// The suite's title for information, warnings, refusals and reported faults.
inline constexpr const char* kSuiteTitle = "QVRCOM+";

enum class Icon { kNone, kInformation, kWarning, kError };
enum class Buttons { kOk, kOkCancel, kYesNoCancel };
enum class Button { kOk, kCancel, kYes, kNo };

// A message box. Text and title are the suite's own to the letter; an empty title shows the host's name.
// The detail says what failed, on what, and what to do; it stands beside the text, never in it.
//
// A question before something that cannot be undone names the act: `act` is the caption of OK or Yes,
// `refrain` the one of Cancel, or of No where there is one, and this is what Enter presses then.
struct Message {
  std::string text;
  std::string title = {};
  Icon icon = Icon::kNone;
  Buttons buttons = Buttons::kOk;
  std::string detail = {};
  std::string act = {};      // "Reset Log"
  std::string refrain = {};  // "" is "Cancel" or "No"
  bool is_fault = false;     // a procedure has failed
};

}  // namespace qvrcom::platform
