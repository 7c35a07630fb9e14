#include "devicefiles/byte_reader.h"

#include <algorithm>

#include "base/fault.h"
#include "base/text.h"
#include "devicefiles/device_epoch.h"

namespace qvrcom::devicefiles {

void ByteReader::refuse(const std::string& reason) const {
  throw base::Fault("The " + std::string(kind_) + " file is damaged", reason + ". Fetch it again.");
}

std::string_view ByteReader::bytes(std::string_view field, std::size_t width) {
  if (width > remaining()) {
    refuse("It ends in the field \"" + std::string(field) + "\", " + std::to_string(width - remaining()) +
           " bytes too early");
  }
  at_ += width;
  return bytes_.substr(at_ - width, width);
}

std::uint32_t ByteReader::number(std::string_view field, std::size_t width) {
  std::uint32_t value = 0;
  for (const char byte : bytes(field, width))
    value = (value << 8U) | static_cast<unsigned char>(byte);
  return value;
}

std::uint32_t ByteReader::in_range(std::string_view field, std::size_t width, std::uint32_t low,
                                   std::uint32_t high) {
  const std::uint32_t value = number(field, width);
  if (value < low || value > high) {
    refuse("The field \"" + std::string(field) + "\" is " + std::to_string(value) + ", not " +
           std::to_string(low) + " to " + std::to_string(high));
  }
  return value;
}

std::string ByteReader::text(std::string_view field, std::size_t width) {
  const std::string_view whole = bytes(field, width);
  const std::string_view value = whole.substr(0, whole.find('\0'));
  const std::string_view filling = whole.substr(value.size());
  if (!std::all_of(filling.begin(), filling.end(), [](char byte) { return byte == '\0'; }) ||
      base::has_control_character(value) || !base::is_utf8(value))
    refuse("The field \"" + std::string(field) + "\" is not a text");
  return std::string(value);
}

base::LocalTime ByteReader::moment(std::string_view field) {
  return moment_of(number(field, 4));
}

}  // namespace qvrcom::devicefiles
