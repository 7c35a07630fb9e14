// Any bytes as what a device says over Telnet: shown, answered or refused, and never more of it than it said.
#include "adapters/telnet_protocol.h"
#include "base/fault.h"
#include "entry.h"

void fuzz(std::string_view bytes) {
  std::size_t shown = 0;
  qvrcom::adapters::TelnetProtocol telnet(
      {[](std::string_view) {}, [&](std::string_view text) { shown += text.size(); }, [](bool) {}});
  try {
    telnet.received(bytes.substr(0, bytes.size() / 2));
    telnet.resized(1, 65535);
    telnet.typed(bytes);
    telnet.received(bytes.substr(bytes.size() / 2));
  } catch (const qvrcom::base::Fault& fault) {
    require(fault.description() == "The device does not keep to the Telnet protocol");
  }
  require(shown <= bytes.size());
}
