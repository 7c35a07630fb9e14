#include "cli/hidden_input.h"

#include <unistd.h>

namespace qvrcom::cli {

HiddenInput::HiddenInput() {
  if (isatty(STDIN_FILENO) == 0 || tcgetattr(STDIN_FILENO, &before_) != 0) return;
  termios silent = before_;
  silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  hidden_ = tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent) == 0;
}

HiddenInput::~HiddenInput() {
  if (hidden_) tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
}

}  // namespace qvrcom::cli
