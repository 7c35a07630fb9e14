#include "adapters/system_clock.h"

#include <ctime>
#include <thread>

namespace qvrcom::adapters {

base::LocalTime SystemClock::now() const {
  const std::time_t moment = std::time(nullptr);
  std::tm civil{};
  localtime_r(&moment, &civil);
  return base::local_time(civil.tm_year + 1900, static_cast<unsigned>(civil.tm_mon + 1),
                          static_cast<unsigned>(civil.tm_mday), civil.tm_hour, civil.tm_min, civil.tm_sec);
}

void SystemClock::sleep(std::chrono::milliseconds time) {
  std::this_thread::sleep_for(time);
}

}  // namespace qvrcom::adapters
