#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "devicefiles/line_statistics.h"
#include "devicefiles/node_types.h"

// The device file "nodestat" of a partition; docs/formats/nodestat.md.
namespace qvrcom::devicefiles {

struct NodeAccess {
  NodeName node;
  std::uint32_t accesses = 0;  // calls that came by
  std::string description;     // the node's name for people, at most 40 bytes

  bool operator==(const NodeAccess&) const = default;
};

// How the calls at a node that asks for a choice ended. The node is an AUTO, DTMF or VOX node.
struct NodeSelections {
  NodeName node;
  std::uint32_t made = 0;       // calls that made a valid choice
  std::uint32_t invalid = 0;    // tries that were no valid choice
  std::uint32_t timed_out = 0;  // calls that chose nothing in time
  std::uint32_t aborted = 0;    // calls that used up their tries

  bool operator==(const NodeSelections&) const = default;
};

// How often one choice of such a node was made.
struct SelectionCount {
  NodeName node;
  std::string choice;  // digits, a range of digits or a spoken word, at most 16 bytes
  std::uint32_t selections = 0;

  bool operator==(const SelectionCount&) const = default;
};

// Where one choice led and how many tries it took.
struct SelectionDetail {
  NodeName node;
  std::string choice;
  NodeName leads_to;              // type and number 0 when the call left the partition
  std::uint32_t first_try = 0;    // selections made at the first try
  std::uint32_t later_tries = 0;  // selections made at a later one

  bool operator==(const SelectionDetail&) const = default;
};

// A node stands once among the accesses and once among the selections, a node's choice once among the counts.
struct NodeStatistics {
  std::uint32_t partition = 1;  // 1 to 64
  CountedTime counted;
  std::vector<NodeAccess> accesses;
  std::vector<NodeSelections> selections;
  std::vector<SelectionCount> counts;
  std::vector<SelectionDetail> details;

  bool operator==(const NodeStatistics&) const = default;
};

// `bytes` is the whole file. Fault when it is none of this suite, of another version, or damaged.
NodeStatistics read_node_statistics(std::string_view bytes);

}  // namespace qvrcom::devicefiles
