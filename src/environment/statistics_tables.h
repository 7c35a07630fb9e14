#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qvrcom::environment {

// What the rows of a statistics table count; the two device files are stored apart from each other.
enum class StatisticsSource { kLines, kNodes };

// A table of decoded statistics. Every one begins with ConfigID, PartitionID and the columns of
// kStatisticsHeadColumns; `columns` are those that follow, blanks between them.
struct StatisticsTable {
  StatisticsSource source;
  std::string_view name;
  std::string_view columns;
};

// The site that the rows were fetched from, and since when and until when they count, by the device's clock
// ("YYYY-MM-DD hh:mm:ss").
inline constexpr std::string_view kStatisticsHeadColumns = "SiteID CountedSince CountedUntil";

std::span<const StatisticsTable> statistics_tables();

// Fault when there is no such table.
const StatisticsTable& statistics_table(std::string_view name);

// All columns of a table in their order, keys first.
std::vector<std::string_view> statistics_columns(const StatisticsTable& table);

// Whether a statistics column is TEXT; the others are INTEGER.
bool is_statistics_text(std::string_view column);

}  // namespace qvrcom::environment
