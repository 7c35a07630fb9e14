#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qvrcom::protocol {

// A device's address as its parts.
struct DeviceAddress {
  std::string host;  // a name, an IPv4 address, or an IPv6 address without brackets
  std::uint16_t ftp_port = 21;
  std::uint16_t telnet_port = 23;

  bool operator==(const DeviceAddress&) const = default;
};

// Reads "host", "host:ftp" or "host:ftp:telnet"; an IPv6 host stands in brackets. Blanks around it are
// dropped. Fault when it is none of these or longer than 300 bytes.
DeviceAddress parse_device_address(std::string_view text);

// Why the text is no address, as the end of a sentence about it; "" when it is one.
std::string device_address_problem(std::string_view text);

}  // namespace qvrcom::protocol
