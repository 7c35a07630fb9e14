#pragma once

// Names of the device's files that hold statistics.
namespace qvrcom::protocol {

// The older form: two binary files, whose deletion restarts the counters in either form.
inline constexpr const char* kLineStatistics = "linestat";
inline constexpr const char* kNodeStatistics = "nodestat";

// The newer form: a table.
inline constexpr const char* kStatisticsTable = "allstats.csv";

}  // namespace qvrcom::protocol
