#include "devicefiles/device_epoch.h"

#include <limits>

#include "base/fault.h"

namespace qvrcom::devicefiles {

base::LocalTime moment_of(std::uint32_t device_seconds) {
  return base::local_time(2000, 1, 1) + std::chrono::seconds{device_seconds};
}

std::uint32_t device_seconds(base::LocalTime moment) {
  const auto seconds = (moment - base::local_time(2000, 1, 1)).count();
  if (seconds < 0 || seconds > std::numeric_limits<std::uint32_t>::max()) {
    throw base::Fault(base::kOverflow, "The device's clock holds the years 2000 to 2135, not " +
                                           base::clock_text(moment) + ".");
  }
  return static_cast<std::uint32_t>(seconds);
}

}  // namespace qvrcom::devicefiles
