#include "devicefiles/device_time.h"

#include "devicefiles/bytes.h"
#include "devicefiles/sections.h"

namespace qvrcom::devicefiles {
namespace {

constexpr FileForm kForm{"QT", "clock"};
constexpr std::size_t kLength = 8;
constexpr std::size_t kChecksumAt = 3;

std::uint32_t checksum(std::string_view bytes) {
  return crc32(std::string(bytes.substr(0, kChecksumAt)) + std::string(bytes.substr(kChecksumAt + 1))) &
         0xFFU;
}

}  // namespace

DeviceTime read_device_time(std::string_view bytes) {
  check_form(bytes, kForm);
  check_length(bytes, kForm, kLength);
  ByteReader reader(bytes, kForm.kind);
  reader.skip(kForm.magic.size() + 1);
  if (reader.u8("checksum") != checksum(bytes)) reader.refuse("Its checksum is wrong");
  return {reader.moment("clock")};
}

std::string write_device_time(const DeviceTime& time) {
  ByteWriter writer;
  writer.bytes(kForm.magic);
  writer.u8("version", kFileVersion);
  writer.u8("checksum", 0);
  writer.moment(time.moment);
  std::string bytes = writer.str();
  bytes[kChecksumAt] = static_cast<char>(checksum(bytes));
  return bytes;
}

}  // namespace qvrcom::devicefiles
