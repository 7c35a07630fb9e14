#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/date_serial.h"

namespace qvrcom::devicefiles {

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

}  // namespace qvrcom::devicefiles
