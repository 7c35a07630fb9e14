#include "devicefiles/crc32.h"

#include <array>

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

}  // namespace qvrcom::devicefiles
