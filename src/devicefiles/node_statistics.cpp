#include "devicefiles/node_statistics.h"

#include <utility>

#include "devicefiles/sections.h"

namespace qvrcom::devicefiles {
namespace {

constexpr FileForm kForm{"QVNS", "node statistics"};
constexpr std::uint32_t kAccessSection = 2, kSelectionsSection = 3, kCountsSection = 4, kDetailsSection = 5;
constexpr std::size_t kDescriptionWidth = 40, kChoiceWidth = 16;
constexpr std::size_t kAccessLength = kNodeNameLength + 4 + kDescriptionWidth;
constexpr std::size_t kSelectionsLength = kNodeNameLength + 16;
constexpr std::size_t kCountsLength = kNodeNameLength + kChoiceWidth + 4;
constexpr std::size_t kDetailsLength = kNodeNameLength + kChoiceWidth + kNodeNameLength + 8;

NodeName read_selecting_node(ByteReader& record) {
  const NodeName node = read_node_name(record);
  if (node.type != kAutoNode && node.type != kDtmfNode && node.type != kVoxNode)
    record.refuse("A node of type " + std::string(node_type_word(node.type)) + " asks for no choice");
  return node;
}

NodeAccess read_access(ByteReader& record) {
  NodeAccess access;
  access.node = read_node_name(record);
  access.accesses = record.u32("accesses");
  access.description = record.text("description", kDescriptionWidth);
  return access;
}

NodeSelections read_selections(ByteReader& record) {
  NodeSelections selections;
  selections.node = read_selecting_node(record);
  selections.made = record.u32("selections");
  selections.invalid = record.u32("invalid tries");
  selections.timed_out = record.u32("timed out");
  selections.aborted = record.u32("aborted");
  return selections;
}

SelectionCount read_count(ByteReader& record) {
  SelectionCount count;
  count.node = read_selecting_node(record);
  count.choice = record.text("choice", kChoiceWidth);
  count.selections = record.u32("selections");
  return count;
}

SelectionDetail read_detail(ByteReader& record) {
  SelectionDetail detail;
  detail.node = read_selecting_node(record);
  detail.choice = record.text("choice", kChoiceWidth);
  detail.leads_to = read_optional_node_name(record);
  detail.first_try = record.u32("first try");
  detail.later_tries = record.u32("later tries");
  return detail;
}

void check_unique(const SectionReader& file, const NodeStatistics& statistics) {
  const auto node = [](const auto& one) { return one.node; };
  require_unique(file, statistics.accesses, "nodes", node);
  require_unique(file, statistics.selections, "nodes", node);
  require_unique(file, statistics.counts, "choices",
                 [](const SelectionCount& one) { return std::pair(one.node, one.choice); });
}

}  // namespace

NodeStatistics read_node_statistics(std::string_view bytes) {
  const SectionReader file(bytes, kForm);
  NodeStatistics result;
  result.partition = read_partition(file);
  result.counted = read_counted(file);
  file.each(kAccessSection, "accesses", kAccessLength,
            [&](ByteReader& record) { result.accesses.push_back(read_access(record)); });
  file.each(kSelectionsSection, "selections made", kSelectionsLength,
            [&](ByteReader& record) { result.selections.push_back(read_selections(record)); });
  file.each(kCountsSection, "selection counts", kCountsLength,
            [&](ByteReader& record) { result.counts.push_back(read_count(record)); });
  file.each(kDetailsSection, "selection details", kDetailsLength,
            [&](ByteReader& record) { result.details.push_back(read_detail(record)); });
  check_unique(file, result);
  return result;
}

}  // namespace qvrcom::devicefiles
