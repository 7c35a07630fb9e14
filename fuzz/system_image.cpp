// Any bytes as the system image "dbase": read and written back alike, or refused with a reason.
#include "fuzz/device_file.h"

#include "devicefiles/configuration_image.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qvrcom;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  fuzz::try_device_file(bytes, devicefiles::read_system_image, devicefiles::write_system_image);
  fuzz::try_device_file(fuzz::sealed(bytes, 8), devicefiles::read_system_image,
                        devicefiles::write_system_image);
  return 0;
}
