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

void write_access(ByteWriter& record, const NodeAccess& one) {
  write_node_name(record, one.node);
  record.u32(one.accesses);
  record.text("description", one.description, kDescriptionWidth);
}

void write_selections(ByteWriter& record, const NodeSelections& one) {
  write_node_name(record, one.node);
  for (const std::uint32_t value : {one.made, one.invalid, one.timed_out, one.aborted})
    record.u32(value);
}

void write_count(ByteWriter& record, const SelectionCount& one) {
  write_node_name(record, one.node);
  record.text("choice", one.choice, kChoiceWidth);
  record.u32(one.selections);
}

void write_detail(ByteWriter& record, const SelectionDetail& one) {
  write_node_name(record, one.node);
  record.text("choice", one.choice, kChoiceWidth);
  write_node_name(record, one.leads_to);
  record.u32(one.first_try);
  record.u32(one.later_tries);
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

std::string write_node_statistics(const NodeStatistics& statistics) {
  SectionWriter file(kForm, {0, statistics.partition});
  write_counted(file, statistics.counted);
  file.section(kAccessSection, kAccessLength, statistics.accesses, write_access);
  file.section(kSelectionsSection, kSelectionsLength, statistics.selections, write_selections);
  file.section(kCountsSection, kCountsLength, statistics.counts, write_count);
  file.section(kDetailsSection, kDetailsLength, statistics.details, write_detail);
  return file.finish();
}

}  // namespace qvrcom::devicefiles
