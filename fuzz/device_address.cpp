// Any bytes as a device's address: the two readers agree, and an address that was read has a host and ports.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "base/fault.h"
#include "protocol/device_address.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const bool refused = !qvrcom::protocol::device_address_problem(text).empty();
  try {
    const auto address = qvrcom::protocol::parse_device_address(text);
    if (refused || address.host.empty() || address.ftp_port == 0 || address.telnet_port == 0) std::abort();
  } catch (const qvrcom::base::Fault&) {
    if (!refused) std::abort();
  }
  return 0;
}
