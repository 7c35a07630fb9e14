// Any bytes as the device file "sysinfo": read and written back alike, or refused with a reason.
#include "fuzz/device_file.h"

#include "devicefiles/system_information.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qvrcom;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  fuzz::try_device_file(bytes, devicefiles::read_system_information, devicefiles::write_system_information);
  fuzz::try_device_file(fuzz::sealed(bytes, 0), devicefiles::read_system_information,
                        devicefiles::write_system_information);
  return 0;
}
