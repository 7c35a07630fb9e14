#pragma once

#include <functional>

#include "platform/clock.h"

namespace qvrcom::doubles {

// A clock that moves only when it is told to, and by the time that is slept.
class ManualClock : public platform::Clock {
 public:
  base::LocalTime now() const override { return time + std::chrono::floor<std::chrono::seconds>(slept); }
  void sleep(std::chrono::milliseconds span) override {
    slept += span;
    if (on_sleep) on_sleep();
  }

  base::LocalTime time = base::local_time(2026, 11, 15, 12, 10, 5);
  std::chrono::milliseconds slept{0};
  std::function<void()> on_sleep;
};

}  // namespace qvrcom::doubles
