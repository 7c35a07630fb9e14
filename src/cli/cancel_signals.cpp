#include "cli/cancel_signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <QObject>

#include "base/fault.h"

namespace qvrcom::cli {
namespace {

constexpr std::array<int, 2> kSignals{SIGINT, SIGTERM};

volatile std::sig_atomic_t wake_pipe = -1;

// Runs in the middle of anything: it may only write, and let the next signal end the program.
void on_signal(int) {
  const int saved = errno;
  const char byte = 1;
  [[maybe_unused]] const ssize_t written = write(wake_pipe, &byte, 1);
  for (const int number : kSignals)
    std::signal(number, SIG_DFL);
  errno = saved;
}

}  // namespace

CancelSignals::CancelSignals(std::function<void()> cancel) : cancel_(std::move(cancel)) {
  if (pipe2(pipe_.data(), O_CLOEXEC | O_NONBLOCK) != 0)
    throw base::Fault("No pipe", "The system gave no pipe for signals. Close other programs.");
  wake_pipe = pipe_[1];
  notifier_ = std::make_unique<QSocketNotifier>(pipe_[0], QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { take(); });
  struct sigaction action {};
  action.sa_handler = on_signal;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (std::size_t i = 0; i < kSignals.size(); ++i)
    sigaction(kSignals[i], &action, &previous_[i]);
}

CancelSignals::~CancelSignals() {
  for (std::size_t i = 0; i < kSignals.size(); ++i)
    sigaction(kSignals[i], &previous_[i], nullptr);
  wake_pipe = -1;
  notifier_.reset();
  for (const int end : pipe_)
    close(end);
}

void CancelSignals::take() {
  char byte = 0;
  if (read(pipe_[0], &byte, 1) != 1) return;
  cancelled_ = true;
  cancel_();
}

}  // namespace qvrcom::cli
