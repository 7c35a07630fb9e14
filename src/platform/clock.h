#pragma once

#include <chrono>

#include "base/date_serial.h"

namespace qvrcom::platform {

class Clock {
 public:
  virtual ~Clock() = default;
  virtual base::LocalTime now() const = 0;

  // Sleeps without letting events run.
  virtual void sleep(std::chrono::milliseconds time) = 0;
};

}  // namespace qvrcom::platform
