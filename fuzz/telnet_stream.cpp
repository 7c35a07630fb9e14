// Any bytes as what a device says over Telnet: shown, answered or refused, and never more of it than it said.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "adapters/telnet_protocol.h"
#include "base/fault.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  std::size_t shown = 0;
  qvrcom::adapters::TelnetProtocol telnet(
      {[](std::string_view) {}, [&](std::string_view text) { shown += text.size(); }, [](bool) {}});
  try {
    telnet.received(bytes.substr(0, size / 2));
    telnet.resized(1, 65535);
    telnet.typed(bytes);
    telnet.received(bytes.substr(size / 2));
  } catch (const qvrcom::base::Fault& fault) {
    if (fault.description() != "The device does not keep to the Telnet protocol") std::abort();
  }
  if (shown > size) std::abort();
  return 0;
}
