#pragma once

#include <iosfwd>
#include <optional>
#include <set>
#include <string>

#include "cli/console.h"
#include "platform/user_interface.h"

namespace qvrcom::cli {

// Message boxes on standard error. A box that asks gets the answer that the command line gave when it has
// such a button, otherwise the answer of the person at the terminal, or, where nobody is, the one that
// changes nothing.
class ConsoleUserInterface : public platform::UserInterface {
 public:
  // `person` is where somebody types answers, null when nobody does.
  ConsoleUserInterface(Console& console, std::optional<platform::Button> answer,
                       std::istream* person = nullptr)
      : console_(console), answer_(answer), person_(person) {}

  // A box that has been shown since `begin_run` is not printed again.
  platform::Button show(const platform::Message& message) override;
  void pump_events() override;

  void begin_run() {
    shown_.clear();
    has_faulted_ = false;
  }
  // Whether a box since then has told of a procedure that failed.
  bool has_faulted() const { return has_faulted_; }

 private:
  platform::Button ask(platform::Buttons buttons);

  Console& console_;
  std::optional<platform::Button> answer_;
  std::istream* person_;
  std::set<std::string> shown_;
  bool has_faulted_ = false;
};

}  // namespace qvrcom::cli
