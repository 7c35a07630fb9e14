#pragma once

#include <QTimer>
#include <functional>

#include "base/fault.h"

namespace qvrcom::ui {

// Long work on the user-interface thread in slices of a few milliseconds, so that the window stays alive.
class Slices {
 public:
  struct Work {
    std::function<bool()> step;      // a small piece; answers whether there is more to do
    std::function<void()> progress;  // after each slice but the last
    std::function<void()> done;      // after the last
    std::function<void(const base::Fault&)> failed;
  };

  Slices();

  // Replaces what was running.
  void start(Work work);
  void cancel();
  bool running() const { return timer_.isActive(); }

 private:
  void run_slice();

  QTimer timer_;
  Work work_;
};

}  // namespace qvrcom::ui
