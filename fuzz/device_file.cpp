// Any bytes as a file of the device, read by QVRCOM_READ: written back alike by QVRCOM_WRITE where the suite
// writes such files, or refused with a reason.
#include "base/fault.h"
#include "devicefiles/bytes.h"
#include "devicefiles/configuration_image.h"
#include "devicefiles/device_time.h"
#include "devicefiles/line_statistics.h"
#include "devicefiles/node_statistics.h"
#include "devicefiles/system_information.h"
#include "entry.h"

namespace {

using namespace qvrcom;

void try_device_file(std::string_view bytes) {
  try {
    [[maybe_unused]] const auto value = devicefiles::QVRCOM_READ(bytes);
#ifdef QVRCOM_WRITE
    require(devicefiles::QVRCOM_READ(devicefiles::QVRCOM_WRITE(value)) == value);
#endif
  } catch (const base::Fault& fault) {
    require(!fault.description().empty() && !fault.detail().empty());
  }
}

void put_number(std::string& bytes, std::size_t at, std::uint32_t value) {
  for (std::size_t i = 0; i < 4; ++i)
    bytes[at + i] = static_cast<char>(value >> (24 - 8 * i));
}

// The bytes with the checksum in the last four made right: damage behind a wrong one would never be reached.
std::string sealed(std::string bytes) {
  const std::size_t end = bytes.size() - 4;
  put_number(bytes, end, devicefiles::crc32(std::string_view(bytes).substr(0, end)));
  return bytes;
}

}  // namespace

void fuzz(std::string_view text) {
  try_device_file(text);
  if (text.size() < 16) return;
  std::string bytes(text);
  try_device_file(sealed(bytes));
  put_number(bytes, 8,
             static_cast<std::uint32_t>(bytes.size()));  // where files of sections hold their length
  try_device_file(sealed(bytes));
}
