#include "cli/console_user_interface.h"

#include <QCoreApplication>
#include <algorithm>
#include <istream>
#include <vector>

#include "base/text.h"

namespace qvrcom::cli {
namespace {

using platform::Button;
using platform::Buttons;

// The buttons of a box, by the letter that answers with them; the last changes nothing.
struct Choice {
  char letter;
  Button button;
};

std::vector<Choice> choices_of(Buttons buttons) {
  switch (buttons) {
    case Buttons::kOk:
      return {{'o', Button::kOk}};
    case Buttons::kOkCancel:
      return {{'o', Button::kOk}, {'c', Button::kCancel}};
    case Buttons::kYesNoCancel:
      return {{'y', Button::kYes}, {'n', Button::kNo}, {'c', Button::kCancel}};
  }
  return {};
}

bool has_button(Buttons buttons, Button button) {
  const auto choices = choices_of(buttons);
  return std::any_of(choices.begin(), choices.end(),
                     [&](const Choice& choice) { return choice.button == button; });
}

Button safe_button(Buttons buttons) {
  return choices_of(buttons).back().button;
}

}  // namespace

Button ConsoleUserInterface::show(const platform::Message& message) {
  const bool given = answer_ && has_button(message.buttons, *answer_);
  const bool asks = person_ != nullptr && !given && message.buttons != Buttons::kOk;
  if (message.is_fault) has_faulted_ = true;
  const bool first = shown_.insert(message.title + '\0' + message.text + '\0' + message.detail).second;
  if (first || asks) console_.report(message);
  if (asks) return ask(message.buttons);
  return given ? *answer_ : safe_button(message.buttons);
}

// Until one of the letters is typed; the end of the input changes nothing.
Button ConsoleUserInterface::ask(Buttons buttons) {
  const auto choices = choices_of(buttons);
  std::string line;
  for (;;) {
    console_.prompt(buttons == Buttons::kOkCancel ? "  OK or Cancel (o/c)? "
                                                  : "  Yes, No or Cancel (y/n/c)? ");
    if (!std::getline(*person_, line)) return safe_button(buttons);
    const std::string typed = base::to_lower(base::trim(line));
    for (const Choice& choice : choices)
      if (typed.starts_with(choice.letter)) return choice.button;
  }
}

void ConsoleUserInterface::pump_events() {
  QCoreApplication::processEvents();
}

}  // namespace qvrcom::cli
