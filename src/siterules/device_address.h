#pragma once

#include <string>

#include "protocol/device_address.h"

namespace qvrcom::siterules {

using protocol::DeviceAddress;
using protocol::parse_device_address;

// The address that a connection method reaches the device at: 1 the modem address, 2 the direct address (the
// LAN address when that is empty), anything else the LAN address. Fault when the method is not a 16-bit
// integer.
std::string device_address(const std::string& method, const std::string& lan, const std::string& direct,
                           const std::string& modem);

}  // namespace qvrcom::siterules
