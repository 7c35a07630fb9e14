#include "cli/console_user_interface.h"

#include <QCoreApplication>

namespace qvrcom::cli {
namespace {

using platform::Button;
using platform::Buttons;

bool has_button(Buttons buttons, Button button) {
  switch (buttons) {
    case Buttons::kOk:
      return button == Button::kOk;
    case Buttons::kOkCancel:
      return button == Button::kOk || button == Button::kCancel;
    case Buttons::kYesNoCancel:
      return button != Button::kOk;
  }
  return false;
}

Button safe_button(Buttons buttons) {
  return buttons == Buttons::kOk ? Button::kOk : Button::kCancel;
}

}  // namespace

Button ConsoleUserInterface::show(const platform::Message& message) {
  platform::Message printed = message;
  if (on_message) on_message(printed);
  if (shown_.insert(printed.title + '\0' + printed.text + '\0' + printed.detail).second)
    console_.report(printed);
  if (answer_ && has_button(message.buttons, *answer_)) return *answer_;
  return safe_button(message.buttons);
}

void ConsoleUserInterface::pump_events() {
  QCoreApplication::processEvents();
}

}  // namespace qvrcom::cli
