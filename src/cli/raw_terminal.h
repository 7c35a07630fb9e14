#pragma once

#include <termios.h>

namespace qvrcom::cli {

// While it lives, a terminal hands over each key at once, Ctrl-C and Ctrl-] among them, and shows what is
// typed only when told to. A descriptor that is no terminal stays as it is.
class RawTerminal {
 public:
  explicit RawTerminal(int descriptor);
  ~RawTerminal();
  RawTerminal(const RawTerminal&) = delete;
  RawTerminal& operator=(const RawTerminal&) = delete;

  bool is_terminal() const { return changed_; }
  void show_typed(bool shown);

 private:
  int descriptor_;
  termios before_{};
  termios raw_{};
  bool changed_ = false;
};

}  // namespace qvrcom::cli
