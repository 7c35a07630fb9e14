#pragma once

#include <string>
#include <string_view>

#include "base/date_serial.h"

// The device file "time"; docs/formats/time.md.
namespace qvrcom::devicefiles {

struct DeviceTime {
  base::LocalTime moment{};  // of the device's own clock, to the second

  bool operator==(const DeviceTime&) const = default;
};

// `bytes` is the whole file, 8 bytes. Fault when it is none of this suite, of another version, or damaged.
DeviceTime read_device_time(std::string_view bytes);

// 8 bytes. Fault "Overflow" when the device's clock cannot hold the moment.
std::string write_device_time(const DeviceTime& time);

}  // namespace qvrcom::devicefiles
