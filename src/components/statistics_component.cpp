#include "components/statistics_component.h"

#include "components/component_registry.h"
#include "components/statistics_csv.h"
#include "components/statistics_rows.h"
#include "images/statistics_files.h"

namespace qvrcom::components {
namespace {

std::string write_csv(const StatisticsParts& parts, const std::string& configuration,
                      const std::string& partition) {
  const environment::DatabaseConnection::Hold hold(parts.connection);
  platform::Database& database = parts.connection.database();
  const std::string text = statistics_csv(database, partition_key(configuration, partition));
  images::StatisticsFiles names(parts.folders, parts.files, parts.ui);
  const std::string path = names.Get_Stats_FileName(session_site(database).value_or(""), parts.dbase);
  if (path.empty()) {
    throw base::Fault(base::kPathNotFound,
                      "There is no name for the statistics file; the message before this one says why.");
  }
  parts.files.replace(path, text);
  return "OK" + path;
}

std::string write_csv_to(const StatisticsParts& parts, std::span<const std::string> arguments) {
  const PartitionKey key = partition_key(arguments[0], arguments[1]);
  parts.files.replace(arguments[2], statistics_csv(parts.connection.database(), key));
  return "OK" + arguments[2];
}

}  // namespace

void add_statistics_component(ComponentRegistry& registry, const StatisticsParts& parts) {
  const std::vector<Operation> operations{
      {"WriteStatsCsv", 2,
       [parts](std::span<const std::string> arguments) {
         return answer("Statistics of partition " + arguments[1],
                       [&] { return write_csv(parts, arguments[0], arguments[1]); });
       }},
      {"WriteStatsCsvTo", 3, [parts](std::span<const std::string> arguments) {
         return answer("Statistics of partition " + arguments[1],
                       [&] { return write_csv_to(parts, arguments); });
       }}};
  registry.add("QVRStats.Stats",
               [operations] { return std::make_unique<TableComponent>("QVRStats.Stats", operations); });
}

}  // namespace qvrcom::components
