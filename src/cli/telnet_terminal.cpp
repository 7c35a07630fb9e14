#include "cli/telnet_terminal.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace qvrcom::cli {
namespace {

constexpr char kLeaveKey = '\x1D';  // Ctrl-]
constexpr std::chrono::milliseconds kTick{100};
constexpr int kSilentTicks = 20;
constexpr std::size_t kMostUnsent = 262144;  // bytes; more is not read from the keyboard
constexpr tcflag_t kUnwantedInput = IXON | IXOFF | ISTRIP | INLCR | IGNCR;
constexpr tcflag_t kUnwantedLocal = ICANON | ISIG | IEXTEN | ECHO | ECHOCTL | ECHONL;

}  // namespace

// While it lives, a terminal hands over each key at once, Ctrl-C and Ctrl-] among them, and shows what is
// typed only when told to. A descriptor that is no terminal stays as it is.
class TelnetTerminal::RawTerminal {
 public:
  // Output stays as it is: messages between the device's lines keep their line ends.
  explicit RawTerminal(int descriptor) : descriptor_(descriptor) {
    if (isatty(descriptor) == 0 || tcgetattr(descriptor, &before_) != 0) return;
    raw_ = before_;
    raw_.c_iflag &= ~kUnwantedInput;
    raw_.c_lflag &= ~kUnwantedLocal;
    raw_.c_cc[VMIN] = 1;
    raw_.c_cc[VTIME] = 0;
    changed_ = tcsetattr(descriptor, TCSADRAIN, &raw_) == 0;
  }
  ~RawTerminal() {
    if (changed_) tcsetattr(descriptor_, TCSADRAIN, &before_);
  }
  RawTerminal(const RawTerminal&) = delete;
  RawTerminal& operator=(const RawTerminal&) = delete;

  bool is_terminal() const { return changed_; }
  void show_typed(bool shown) {
    if (!changed_) return;
    if (shown) {
      raw_.c_lflag |= ECHO;
    } else {
      raw_.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    }
    tcsetattr(descriptor_, TCSADRAIN, &raw_);
  }

 private:
  int descriptor_;
  termios before_{};
  termios raw_{};
  bool changed_ = false;
};

TelnetTerminal::TelnetTerminal(Console& console, platform::Terminal& terminal, int keyboard)
    : console_(console), terminal_(terminal), keyboard_(keyboard) {
  QObject::connect(&ticks_, &QTimer::timeout, &ticks_, [this] { tick(); });
}

TelnetTerminal::~TelnetTerminal() {
  leave();
}

void TelnetTerminal::attach(const std::string& job_name) {
  platform::TerminalEvents events;
  events.attached = [this] { attached(); };
  events.output = [this](std::string_view bytes) { hear(bytes); };
  events.echo = [this](bool device_echoes) {
    device_echoes_ = device_echoes;
    if (raw_) raw_->show_typed(!device_echoes);
  };
  events.ended = [this](const std::string& why) { ended(why); };
  terminal_.attach(job_name, std::move(events));
}

void TelnetTerminal::leave() {
  terminal_.leave();
  give_back();
}

void TelnetTerminal::attached() {
  console_.show_status(false);
  raw_ = std::make_unique<RawTerminal>(keyboard_);
  raw_->show_typed(!device_echoes_);
  if (raw_->is_terminal()) console_.tell("Telnet session with the device; Ctrl-] leaves it.");
  tell_size();
  typed_ = std::make_unique<QSocketNotifier>(keyboard_, QSocketNotifier::Read);
  QObject::connect(typed_.get(), &QSocketNotifier::activated, typed_.get(), [this] { take_typed(); });
  ticks_.start(kTick);
}

void TelnetTerminal::hear(std::string_view bytes) {
  silent_ticks_ = 0;
  console_.pass(bytes);
}

void TelnetTerminal::ended(const std::string& why) {
  const std::string rest = unsent_text();
  give_back();
  console_.tell(why, rest);
}

// A session's wait lets events run ten times a second: each time as much is taken as may be on its way.
void TelnetTerminal::take_typed() {
  pollfd more{keyboard_, POLLIN, 0};
  do {
    take_piece();
  } while (typed_ && typed_->isEnabled() && poll(&more, 1, 0) > 0);
}

void TelnetTerminal::take_piece() {
  std::array<char, 4096> bytes;
  const ssize_t count = read(keyboard_, bytes.data(), bytes.size());
  if (count > 0) return take({bytes.data(), static_cast<std::size_t>(count)});
  if (count < 0 && (errno == EINTR || errno == EAGAIN)) return;
  input_ended_ = true;
  typed_->setEnabled(false);
}

void TelnetTerminal::take(std::string_view typed) {
  const std::size_t end = raw_->is_terminal() ? typed.find(kLeaveKey) : std::string_view::npos;
  const std::string_view sent = typed.substr(0, end);
  sent_ += sent.size();
  if (!sent.empty()) terminal_.send(sent);
  silent_ticks_ = 0;
  if (end != std::string_view::npos) return leave();
  if (terminal_.unsent() > kMostUnsent) typed_->setEnabled(false);
}

void TelnetTerminal::tick() {
  tell_size();
  const bool sent = terminal_.unsent() <= kMostUnsent;
  if (!input_ended_) return typed_->setEnabled(sent);
  if (++silent_ticks_ >= kSilentTicks && terminal_.unsent() == 0) leave();
}

void TelnetTerminal::tell_size() {
  winsize size{};
  if (!raw_->is_terminal() || ioctl(keyboard_, TIOCGWINSZ, &size) != 0) return;
  if (size.ws_col == 0 || std::pair(size.ws_col, size.ws_row) == size_) return;
  size_ = {size.ws_col, size.ws_row};
  terminal_.resize(size.ws_col, size.ws_row);
}

std::string TelnetTerminal::unsent_text() const {
  const std::uint64_t unsent = terminal_.unsent();
  if (unsent == 0) return {};
  int unread = 0;
  const bool more = ioctl(keyboard_, FIONREAD, &unread) == 0 && unread > 0;
  return std::to_string(sent_ - std::min(sent_, unsent)) + " of " + std::to_string(sent_) +
         " bytes typed went to the device, " + std::to_string(unsent) + " did not." +
         (more ? " What follows them was not read." : "");
}

// The notifier may be the one that is being served.
void TelnetTerminal::give_back() {
  ticks_.stop();
  if (typed_) {
    typed_->setEnabled(false);
    typed_.release()->deleteLater();
  }
  if (raw_) console_.show_status(true);
  raw_.reset();
}

}  // namespace qvrcom::cli
