#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "base/fault.h"
#include "devicefiles/crc32.h"

namespace qvrcom::fuzz {

// What was read is written to the bytes that read the same; a refusal says why.
template <class Read, class Write>
void try_device_file(std::string_view bytes, Read read, Write write) {
  try {
    const auto value = read(bytes);
    if (!(read(write(value)) == value)) std::abort();
  } catch (const base::Fault& fault) {
    if (fault.description().empty() || fault.detail().empty()) std::abort();
  }
}

inline void put_number(std::string& bytes, std::size_t at, std::uint32_t value) {
  for (std::size_t i = 0; i < 4; ++i)
    bytes[at + i] = static_cast<char>(value >> (24 - 8 * i));
}

// The bytes with the length at `length_at` (0 for none) and the checksum in the last four made right: damage
// behind a wrong checksum would never be reached.
inline std::string sealed(std::string_view bytes, std::size_t length_at) {
  std::string result(bytes);
  if (result.size() < 16) return result;
  if (length_at != 0) put_number(result, length_at, static_cast<std::uint32_t>(result.size()));
  const std::size_t end = result.size() - 4;
  put_number(result, end, devicefiles::crc32(std::string_view(result).substr(0, end)));
  return result;
}

}  // namespace qvrcom::fuzz
