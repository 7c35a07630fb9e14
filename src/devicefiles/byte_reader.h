#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/date_serial.h"

namespace qvrcom::devicefiles {

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

}  // namespace qvrcom::devicefiles
