#include "devicefiles/system_information.h"

#include "devicefiles/bytes.h"
#include "devicefiles/sections.h"

namespace qvrcom::devicefiles {
namespace {

constexpr FileForm kForm{"QI", "system information"};
constexpr std::size_t kLength = 72;
constexpr std::size_t kChecksumAt = 68;
constexpr std::size_t kFirmwareWidth = 8, kSerialWidth = 16, kModelWidth = 12;

SystemInformation read_fields(ByteReader& reader) {
  SystemInformation result;
  reader.skip(kForm.magic.size() + 1);
  reader.in_range("length", 1, kLength, kLength);
  result.firmware = reader.text("firmware", kFirmwareWidth);
  result.serial_number = reader.text("serial number", kSerialWidth);
  result.model = reader.text("model", kModelWidth);
  result.machine_type = reader.in_range("machine type", 1, 2, 3);
  result.lines = reader.u8("lines");
  result.partitions = reader.in_range("partitions", 1, 0, 64);
  reader.skip(1);
  result.memory = reader.u32("message memory");
  result.memory_used = reader.in_range("message memory in use", 4, 0, result.memory);
  result.uptime = reader.u32("time since the start");
  result.moment = reader.moment("clock");
  return result;
}

}  // namespace

SystemInformation read_system_information(std::string_view bytes) {
  check_form(bytes, kForm);
  check_length(bytes, kForm, kLength);
  ByteReader checked(bytes.substr(kChecksumAt), kForm.kind);
  if (checked.u32("checksum") != crc32(bytes.substr(0, kChecksumAt))) checked.refuse("Its checksum is wrong");
  ByteReader reader(bytes, kForm.kind);
  return read_fields(reader);
}

}  // namespace qvrcom::devicefiles
