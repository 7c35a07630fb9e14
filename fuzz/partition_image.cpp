// Any bytes as a partition image "dbase": read and written back alike, or refused with a reason.
#include "fuzz/device_file.h"

#include "devicefiles/configuration_image.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qvrcom;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  fuzz::try_device_file(bytes, devicefiles::read_partition_image, devicefiles::write_partition_image);
  fuzz::try_device_file(fuzz::sealed(bytes, 8), devicefiles::read_partition_image,
                        devicefiles::write_partition_image);
  return 0;
}
