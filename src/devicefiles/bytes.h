#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/date_serial.h"

// The device's clock counts seconds since 1 January 2000 00:00 of its own local time, without a zone.
namespace qvrcom::devicefiles {

// The CRC-32 of ISO 3309 (polynomial 0x04C11DB7 reflected, start and end inverted): "123456789" gives
// 0xCBF43926.
std::uint32_t crc32(std::string_view bytes);

// Reads big-endian fields one after the other and never beyond the end. Every fault names the file's kind and
// the field.
class ByteReader {
 public:
  // `kind` is the file's kind in the user's words ("line statistics") and outlives the reader, as do the
  // bytes.
  ByteReader(std::string_view bytes, std::string_view kind) : bytes_(bytes), kind_(kind) {}

  std::uint32_t u8(std::string_view field) { return number(field, 1); }
  std::uint32_t u16(std::string_view field) { return number(field, 2); }
  std::uint32_t u32(std::string_view field) { return number(field, 4); }

  // A number of `width` bytes within a range, both ends included.
  std::uint32_t in_range(std::string_view field, std::size_t width, std::uint32_t low, std::uint32_t high);

  // A byte that is 0 or 1.
  bool flag(std::string_view field) { return in_range(field, 1, 0, 1) == 1; }

  // A text of `width` bytes, filled with zero bytes behind its end. Fault when it holds anything behind the
  // first zero byte, a control character, or bytes that are not UTF-8.
  std::string text(std::string_view field, std::size_t width);

  // Seconds since 1 January 2000 00:00 of the device's clock, 4 bytes.
  base::LocalTime moment(std::string_view field);

  std::string_view bytes(std::string_view field, std::size_t width);
  void skip(std::size_t width) { bytes("unused bytes", width); }
  std::size_t remaining() const { return bytes_.size() - at_; }

  // Ends the reading with a fault: the file is damaged, and why.
  [[noreturn]] void refuse(const std::string& reason) const;

 private:
  std::uint32_t number(std::string_view field, std::size_t width);

  std::string_view bytes_;
  std::string_view kind_;
  std::size_t at_ = 0;
};

// Builds big-endian fields one after the other. A value that its field cannot hold is a Fault that names it.
class ByteWriter {
 public:
  void u8(std::string_view field, std::uint32_t value) { number(field, value, 1); }
  void u16(std::string_view field, std::uint32_t value) { number(field, value, 2); }
  void u32(std::uint32_t value) { number({}, value, 4); }
  void flag(bool value) { number({}, value ? 1 : 0, 1); }

  // Filled with zero bytes up to `width`.
  void text(std::string_view field, std::string_view value, std::size_t width);
  void moment(base::LocalTime value);
  void bytes(std::string_view value) { bytes_ += value; }

  const std::string& str() const { return bytes_; }

 private:
  void number(std::string_view field, std::uint32_t value, std::size_t width);

  std::string bytes_;
};

base::LocalTime moment_of(std::uint32_t device_seconds);

// Fault "Overflow" outside of 1 January 2000 to 7 February 2136 06:28:15.
std::uint32_t device_seconds(base::LocalTime moment);

}  // namespace qvrcom::devicefiles
