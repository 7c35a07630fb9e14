#pragma once

#include <QSocketNotifier>
#include <array>
#include <csignal>
#include <functional>
#include <memory>

namespace qvrcom::cli {

// While it lives, the first Ctrl-C (or SIGTERM) calls `cancel` from the event loop; a second one ends the
// program at once. One at a time in a program.
class CancelSignals {
 public:
  explicit CancelSignals(std::function<void()> cancel);
  ~CancelSignals();
  CancelSignals(const CancelSignals&) = delete;
  CancelSignals& operator=(const CancelSignals&) = delete;

  // Whether a signal has come.
  bool cancelled() const { return cancelled_; }

 private:
  void take();

  std::function<void()> cancel_;
  std::array<int, 2> pipe_{-1, -1};
  std::array<struct sigaction, 2> previous_{};
  std::unique_ptr<QSocketNotifier> notifier_;
  bool cancelled_ = false;
};

}  // namespace qvrcom::cli
