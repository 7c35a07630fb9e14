#include "environment/statistics_tables.h"

#include <algorithm>
#include <array>

#include "base/fault.h"
#include "base/text.h"

namespace qvrcom::environment {
namespace {

using enum StatisticsSource;

constexpr std::string_view kCounts = "NodeNumber Choice Selections";
constexpr std::string_view kDetails =
    "NodeNumber Choice LeadsToNodeType LeadsToNodeNumber FirstTry LaterTries";

constexpr auto kTables = std::to_array<StatisticsTable>({
    {kLines, "Stats_Line_Call_Counts", "Line Calls Answered Busy NoAnswer SecondsInUse LongestCall"},
    {kLines, "Stats_Line_XFER_Counts", "Line Transfers"},
    {kLines, "Stats_Simultaneous_Lines_Active", "LinesActive Times Seconds"},
    {kNodes, "Stats_Node_Access", "NodeType NodeNumber NodeDescription Accesses"},
    {kNodes, "Stats_Selections_Made", "NodeType NodeNumber Selections InvalidTries TimedOut Aborted"},
    {kNodes, "Stats_Auto_Selection_Counts", kCounts},
    {kNodes, "Stats_DTMF_Selection_Counts", kCounts},
    {kNodes, "Stats_VOX_Selection_Counts", kCounts},
    {kNodes, "Stats_Detail_Auto", kDetails},
    {kNodes, "Stats_Detail_DTMF", kDetails},
    {kNodes, "Stats_Detail_VOX", kDetails},
});

constexpr auto kTexts = std::to_array<std::string_view>(
    {"CountedSince", "CountedUntil", "NodeType", "NodeDescription", "Choice", "LeadsToNodeType"});

}  // namespace

std::span<const StatisticsTable> statistics_tables() {
  return kTables;
}

const StatisticsTable& statistics_table(std::string_view name) {
  const auto* found = std::find_if(kTables.begin(), kTables.end(),
                                   [&](const StatisticsTable& table) { return table.name == name; });
  if (found == kTables.end())
    throw base::Fault("Item not found in this collection", "No statistics table " + std::string(name) + ".");
  return *found;
}

std::vector<std::string_view> statistics_columns(const StatisticsTable& table) {
  std::vector<std::string_view> columns{"ConfigID", "PartitionID"};
  for (const std::string_view list : {kStatisticsHeadColumns, table.columns}) {
    for (const std::string_view column : base::split(list, " "))
      columns.push_back(column);
  }
  return columns;
}

bool is_statistics_text(std::string_view column) {
  return std::find(kTexts.begin(), kTexts.end(), column) != kTexts.end();
}

}  // namespace qvrcom::environment
