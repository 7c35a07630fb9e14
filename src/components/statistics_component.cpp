#include "components/statistics_component.h"

#include "base/fault.h"
#include "components/component_registry.h"
#include "components/statistics_rows.h"
#include "csv/csv_records.h"
#include "images/statistics_files.h"

namespace qvrcom::components {
namespace {

// A table of the report: its headings, and a query that answers with at least as many columns. :p1, :p2 and
// :p3 are configuration, partition and site.
struct ReportTable {
  csv::Record headings;
  std::string sql;
};

const std::string kWhere = " WHERE ConfigID = :p1 AND PartitionID = :p2 AND SiteID = :p3";

// The same columns of the tables of the three types of selecting nodes, one after the other.
std::string of_selecting_nodes(const std::string& prefix, const std::string& suffix,
                               const std::string& columns) {
  std::string sql;
  for (const char* word : {"Auto", "DTMF", "VOX"}) {
    sql += (sql.empty() ? "" : " UNION ALL ") + ("SELECT UPPER('" + std::string(word)) +
           "') || NodeNumber, " + columns + " FROM " + prefix + word + suffix + kWhere;
  }
  return sql;
}

// The lines, then their total.
std::string line_sql() {
  const std::string from =
      " FROM Stats_Line_Call_Counts AS Calls_ LEFT JOIN (SELECT Line AS XferLine, Transfers FROM "
      "Stats_Line_XFER_Counts" +
      kWhere + ") ON XferLine = Line" + kWhere;
  return "SELECT Line, Calls, Answered, Busy, NoAnswer, COALESCE(Transfers, 0) AS Transfers, SecondsInUse, "
         "LongestCall, 0 AS Place" +
         from +
         " UNION ALL SELECT 'Total', SUM(Calls), SUM(Answered), SUM(Busy), SUM(NoAnswer), "
         "COALESCE(SUM(Transfers), 0), SUM(SecondsInUse), MAX(LongestCall), 1" +
         from + " GROUP BY ConfigID ORDER BY Place, Line";
}

std::vector<ReportTable> report_tables() {
  return {
      {{"Line", "Calls", "Answered", "Busy", "No Answer", "Transfers", "Seconds In Use", "Longest Call"},
       line_sql()},
      {{"Lines Active", "Times", "Seconds"},
       "SELECT LinesActive, Times, Seconds FROM Stats_Simultaneous_Lines_Active" + kWhere +
           " ORDER BY LinesActive"},
      {{"Node", "Name", "Accesses"},
       "SELECT NodeType || NodeNumber, NodeDescription, Accesses FROM Stats_Node_Access" + kWhere +
           " ORDER BY rowid"},
      {{"Node", "Selections", "Invalid Tries", "Timed Out", "Aborted"},
       "SELECT NodeType || NodeNumber, Selections, InvalidTries, TimedOut, Aborted FROM "
       "Stats_Selections_Made" +
           kWhere + " ORDER BY rowid"},
      {{"Node", "Choice", "Selections"},
       of_selecting_nodes("Stats_", "_Selection_Counts", "Choice, Selections")},
      {{"Node", "Choice", "Leads To", "First Try", "Later Tries"},
       of_selecting_nodes("Stats_Detail_", "",
                          "Choice, COALESCE(LeadsToNodeType || LeadsToNodeNumber, 'Out of the partition'), "
                          "FirstTry, LaterTries")},
  };
}

std::string table_text(const ReportTable& table, const base::Rows& rows) {
  std::string text = csv::csv_line(table.headings);
  for (const base::Row row : rows) {
    csv::Record record;
    for (std::size_t i = 0; i < table.headings.size(); ++i)
      record.push_back(row.text(rows.columns()[i]));
    text += csv::csv_line(record);
  }
  return text;
}

// Since when and until when the rows of a table count; "" where it has none.
base::Field counted(platform::Database& database, const char* table, const char* column,
                    const std::vector<base::Field>& keys) {
  return run(database, std::string("SELECT MAX(") + column + ") AS Found FROM " + table + kWhere,
             keys)[0]["Found"];
}

std::string caption(platform::Database& database, const base::Row site,
                    const std::vector<base::Field>& keys) {
  const base::Field lines = counted(database, "Stats_Line_Call_Counts", "CountedSince", keys);
  const base::Field nodes = counted(database, "Stats_Node_Access", "CountedSince", keys);
  base::Field until = counted(database, "Stats_Line_Call_Counts", "CountedUntil", keys);
  if (!until) until = counted(database, "Stats_Node_Access", "CountedUntil", keys);
  std::string text;
  const auto add = [&](const char* title, const base::Field& value) {
    if (value) text += csv::csv_line({title, *value});
  };
  add("SiteName", site.text("User_Defined_Site_Name"));
  add("UserSiteID", site.text("User_Defined_Site_ID"));
  add("Report", "Call statistics");
  add("Firmware", site["FirmwareVersion"]);
  add("Partition", keys[1]);
  add("Device time", until);
  add("Lines counted since", lines);
  add("Nodes counted since", nodes);
  return text;
}

// The statistics that were last decoded for the partition from the site that the session works on: two-column
// rows about the report, the first two naming the site, then a table for each kind of counter, a blank line
// between tables. Fault when the session has no site or the database no statistics of it for the partition.
std::string statistics_csv(platform::Database& database, const PartitionKey& key) {
  const base::Field site_id = session_site(database);
  const base::Rows sites = run(database, "SELECT * FROM Site WHERE SiteID = :p1", {site_id});
  if (sites.empty())
    throw base::Fault("There is no site", "The site that the session works on is not in the site book.");
  const std::vector<base::Field> keys{key.configuration, key.partition, site_id};
  std::string tables;
  for (const ReportTable& table : report_tables()) {
    const base::Rows rows = run(database, table.sql, keys);
    if (rows.empty()) continue;
    if (!tables.empty()) tables += "\r\n";
    tables += table_text(table, rows);
  }
  if (tables.empty()) {
    throw base::Fault("There are no statistics",
                      "The database holds none of partition " + key.partition + " of the site " +
                          sites[0].text("User_Defined_Site_Name") + ". Retrieve them from the device.");
  }
  return caption(database, sites[0], keys) + tables;
}

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
