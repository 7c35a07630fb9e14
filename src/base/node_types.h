#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace qvrcom::base {

// The kinds of call-flow nodes of a partition, in the order in which the suite lists them.
enum class NodeType : std::size_t {
  kMsg,
  kCmd,
  kTime,
  kDate,
  kXfer,
  kStyle,
  kDtmf,
  kVox,
  kList,
  kAuto,
  kMoh,
  kPaas,
  kTable,
  kNis,
  kDbn,
  kDir
};

// The word of each type: node 12 of type MSG is named MSG12.
inline constexpr std::array<std::string_view, 16> kNodeTypeWords{
    "MSG",  "CMD",  "TIME", "DATE", "XFER",  "STYLE", "DTMF", "VOX",
    "LIST", "AUTO", "MOH",  "PAAS", "TABLE", "NIS",   "DBN",  "DIR"};

constexpr std::string_view node_type_word(NodeType type) {
  return kNodeTypeWords[static_cast<std::size_t>(type)];
}

}  // namespace qvrcom::base
