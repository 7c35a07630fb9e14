#include "devicefiles/bytes.h"

#include <algorithm>
#include <array>
#include <limits>

#include "base/fault.h"
#include "base/text.h"

namespace qvrcom::devicefiles {
namespace {

constexpr std::array<std::uint32_t, 256> make_table() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t i = 0; i < table.size(); ++i) {
    std::uint32_t value = i;
    for (int bit = 0; bit < 8; ++bit)
      value = (value >> 1U) ^ ((value & 1U) != 0 ? 0xEDB88320U : 0U);
    table[i] = value;
  }
  return table;
}

constexpr auto kTable = make_table();

}  // namespace

std::uint32_t crc32(std::string_view bytes) {
  std::uint32_t value = 0xFFFFFFFFU;
  for (const char byte : bytes)
    value = kTable[(value ^ static_cast<unsigned char>(byte)) & 0xFFU] ^ (value >> 8U);
  return ~value;
}

void ByteReader::refuse(const std::string& reason) const {
  throw base::Fault("The " + std::string(kind_) + " file is damaged",
                    reason + ". Fetch it again, if the device still has it.");
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

void ByteWriter::number(std::string_view field, std::uint32_t value, std::size_t width) {
  if (width < 4 && value >> (8 * width) != 0) {
    throw base::Fault(base::kOverflow,
                      "The field \"" + std::string(field) + "\" cannot hold " + std::to_string(value) + ".");
  }
  for (std::size_t i = width; i-- > 0;)
    bytes_ += static_cast<char>((value >> (8 * i)) & 0xFFU);
}

void ByteWriter::text(std::string_view field, std::string_view value, std::size_t width) {
  if (value.size() > width) {
    throw base::Fault(base::kOverflow, "The field \"" + std::string(field) + "\" holds " +
                                           std::to_string(width) + " bytes, not \"" + std::string(value) +
                                           "\".");
  }
  bytes_ += value;
  bytes_.append(width - value.size(), '\0');
}

void ByteWriter::moment(base::LocalTime value) {
  u32(device_seconds(value));
}

base::LocalTime moment_of(std::uint32_t device_seconds) {
  return base::local_time(2000, 1, 1) + std::chrono::seconds{device_seconds};
}

std::uint32_t device_seconds(base::LocalTime moment) {
  const auto seconds = (moment - base::local_time(2000, 1, 1)).count();
  if (seconds < 0 || seconds > std::numeric_limits<std::uint32_t>::max()) {
    throw base::Fault(base::kOverflow, "The device's clock holds the years 2000 to 2135, not " +
                                           base::clock_text(moment) + ".");
  }
  return static_cast<std::uint32_t>(seconds);
}

}  // namespace qvrcom::devicefiles
