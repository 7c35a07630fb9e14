// Any bytes as the device file "nodestat": read and written back alike, or refused with a reason.
#include "fuzz/device_file.h"

#include "devicefiles/node_statistics.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qvrcom;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  fuzz::try_device_file(bytes, devicefiles::read_node_statistics, devicefiles::write_node_statistics);
  fuzz::try_device_file(fuzz::sealed(bytes, 8), devicefiles::read_node_statistics,
                        devicefiles::write_node_statistics);
  return 0;
}
