// Any bytes as a device's address: the two readers agree, and an address that was read has a host and ports.
#include "protocol/device_address.h"
#include "base/fault.h"
#include "entry.h"

void fuzz(std::string_view text) {
  const bool refused = !qvrcom::protocol::device_address_problem(text).empty();
  try {
    const auto address = qvrcom::protocol::parse_device_address(text);
    require(!refused && !address.host.empty() && address.ftp_port != 0 && address.telnet_port != 0);
  } catch (const qvrcom::base::Fault&) {
    require(refused);
  }
}
