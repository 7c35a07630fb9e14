// Any bytes as the device file "time": read and written back alike, or refused with a reason.
#include "fuzz/device_file.h"

#include "devicefiles/device_time.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qvrcom;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  fuzz::try_device_file(bytes, devicefiles::read_device_time, devicefiles::write_device_time);
  return 0;
}
