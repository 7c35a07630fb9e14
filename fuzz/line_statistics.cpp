// Any bytes as the device file "linestat": read and written back alike, or refused with a reason.
#include "fuzz/device_file.h"

#include "devicefiles/line_statistics.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qvrcom;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  fuzz::try_device_file(bytes, devicefiles::read_line_statistics, devicefiles::write_line_statistics);
  fuzz::try_device_file(fuzz::sealed(bytes, 8), devicefiles::read_line_statistics,
                        devicefiles::write_line_statistics);
  return 0;
}
