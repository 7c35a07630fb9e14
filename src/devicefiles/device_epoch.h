#pragma once

#include <cstdint>

#include "base/date_serial.h"

// The device's clock counts seconds since 1 January 2000 00:00 of its own local time, without a zone.
namespace qvrcom::devicefiles {

base::LocalTime moment_of(std::uint32_t device_seconds);

// Fault "Overflow" outside of 1 January 2000 to 7 February 2136 06:28:15.
std::uint32_t device_seconds(base::LocalTime moment);

}  // namespace qvrcom::devicefiles
