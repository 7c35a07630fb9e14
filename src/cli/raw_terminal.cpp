#include "cli/raw_terminal.h"

#include <unistd.h>

namespace qvrcom::cli {
namespace {

constexpr tcflag_t kUnwantedInput = IXON | IXOFF | ISTRIP | INLCR | IGNCR;
constexpr tcflag_t kUnwantedLocal = ICANON | ISIG | IEXTEN | ECHO | ECHOCTL | ECHONL;

}  // namespace

// Output stays as it is: messages between the device's lines keep their line ends.
RawTerminal::RawTerminal(int descriptor) : descriptor_(descriptor) {
  if (isatty(descriptor) == 0 || tcgetattr(descriptor, &before_) != 0) return;
  raw_ = before_;
  raw_.c_iflag &= ~kUnwantedInput;
  raw_.c_lflag &= ~kUnwantedLocal;
  raw_.c_cc[VMIN] = 1;
  raw_.c_cc[VTIME] = 0;
  changed_ = tcsetattr(descriptor, TCSADRAIN, &raw_) == 0;
}

RawTerminal::~RawTerminal() {
  if (changed_) tcsetattr(descriptor_, TCSADRAIN, &before_);
}

void RawTerminal::show_typed(bool shown) {
  if (!changed_) return;
  if (shown) {
    raw_.c_lflag |= ECHO;
  } else {
    raw_.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  }
  tcsetattr(descriptor_, TCSADRAIN, &raw_);
}

}  // namespace qvrcom::cli
