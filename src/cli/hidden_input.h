#pragma once

#include <termios.h>

namespace qvrcom::cli {

// What is typed at standard input is not shown while it lives. Without a terminal it has no effect.
class HiddenInput {
 public:
  HiddenInput();
  ~HiddenInput();
  HiddenInput(const HiddenInput&) = delete;
  HiddenInput& operator=(const HiddenInput&) = delete;

 private:
  termios before_{};
  bool hidden_ = false;
};

}  // namespace qvrcom::cli
