#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace qvrcom::devicefiles {

// The node types in the order of their numbers: type 1 is MSG.
inline constexpr std::array<std::string_view, 16> kNodeTypeWords{
    "MSG",  "CMD",  "TIME", "DATE", "XFER",  "STYLE", "DTMF", "VOX",
    "LIST", "AUTO", "MOH",  "PAAS", "TABLE", "NIS",   "DBN",  "DIR"};

// The word of a type from 1 to 16.
constexpr std::string_view node_type_word(std::uint32_t type) {
  return kNodeTypeWords.at(type - 1);
}

inline constexpr std::uint32_t kVoxNode = 8, kDtmfNode = 7, kAutoNode = 10;

// A node of a partition. Type 0 with number 0 is no node at all, where a field allows it.
struct NodeName {
  std::uint32_t type = 0;    // 1 to 16
  std::uint32_t number = 0;  // 1 to 32767

  auto operator<=>(const NodeName&) const = default;
};

}  // namespace qvrcom::devicefiles
