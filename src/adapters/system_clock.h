#pragma once

#include "platform/clock.h"

namespace qvrcom::adapters {

class SystemClock : public platform::Clock {
 public:
  base::LocalTime now() const override;
  void sleep(std::chrono::milliseconds time) override;
};

}  // namespace qvrcom::adapters
