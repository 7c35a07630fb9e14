#include "environment/schema.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "base/fault.h"
#include "base/number.h"
#include "environment/device_tables.h"
#include "environment/statistics_tables.h"

namespace qvrcom::environment {
namespace {

struct Table {
  std::string_view name;
  std::string_view columns;
  std::string_view indexed;  // "" for none
};

constexpr auto kSuiteTables = std::to_array<Table>({
    {"SessionQVR", "SiteID", ""},
    {"Users", "LoginName Current", ""},
    {"Configurations", "ID Current", ""},
    {"File_Handling", "SiteID FileType DefaultPathname DefaultFilename AutoIncrements", "SiteID"},
    {"Partition_Settings", "Config_ID PartitionID Name", "Config_ID"},
    {"Used_Lines", "Config_ID Base_Slot_No Slot_Offset Line RTQA_Option", "Config_ID"},
    {"RTQAConfig", "ConfigID SwitchType", "ConfigID"},
    {"Used_Cards", "Config_ID", "Config_ID"},
    {"Node_Type_Max", "Config_ID", "Config_ID"},
    {"Daylight_Savings", "ConfigID", "ConfigID"},
    {"Daylight_Mode_Date", "DaylightSavingsMasterID", "DaylightSavingsMasterID"},
});

constexpr std::string_view kSiteTable =
    "CREATE TABLE Site (SiteID INTEGER PRIMARY KEY AUTOINCREMENT, User_Defined_Site_Name TEXT, "
    "User_Defined_Site_ID TEXT, ControlCardType TEXT, ConnectMethodID INTEGER, IPLAN TEXT, IPMODEM TEXT, "
    "AccessCode TEXT, DialupConnection TEXT, NumberToDial TEXT, FirmwareVersion TEXT)";

// Identifiers, numbers and keys; everything else is text.
bool is_integer(std::string_view column) {
  constexpr auto kOthers = std::to_array<std::string_view>(
      {"Current", "Slot_Offset", "Line", "RTQA_Option", "SwitchType", "NumberOfDigits", "NumberRetries"});
  return column.ends_with("ID") || column.ends_with("Number") || column.ends_with("No") ||
         std::find(kOthers.begin(), kOthers.end(), column) != kOthers.end();
}

std::string quoted(std::string_view name) {
  return "\"" + std::string(name) + "\"";
}

void create_table(platform::Database& database, std::string_view name, std::string_view columns) {
  std::string list;
  for (const std::string_view column : column_list(columns)) {
    if (!list.empty()) list += ", ";
    list += quoted(column) + (is_integer(column) ? " INTEGER" : " TEXT");
  }
  database.run("CREATE TABLE " + quoted(name) + " (" + list + ")");
}

void create_index(platform::Database& database, std::string_view name, std::string_view columns) {
  std::string list;
  for (const std::string_view column : column_list(columns))
    list += (list.empty() ? "" : ", ") + quoted(column);
  database.run("CREATE INDEX " + quoted("By_" + std::string(name)) + " ON " + quoted(name) + " (" + list +
               ")");
}

void create_tables(platform::Database& database) {
  database.run(std::string(kSiteTable));
  for (const Table& table : kSuiteTables) {
    create_table(database, table.name, table.columns);
    if (!table.indexed.empty()) create_index(database, table.name, table.indexed);
  }
  create_table(database, "QVRSettings", kSettingsColumns);
  create_index(database, "QVRSettings", "ConfigID");
  for (const DeviceTable& table : device_tables()) {
    create_table(database, table.name, table.columns);
    create_index(database, table.name,
                 table.kind == TableKind::kStatistics ? "ConfigID PartitionID" : "ConfigID PartID");
  }
}

// Gives the statistics tables, until then keys alone, columns for what is decoded. Rows that are there keep
// nulls in them and belong to no site.
void widen_statistics(platform::Database& database) {
  for (const StatisticsTable& table : statistics_tables()) {
    for (const std::string_view column : statistics_columns(table)) {
      if (column == "ConfigID" || column == "PartitionID") continue;
      database.run("ALTER TABLE " + quoted(table.name) + " ADD COLUMN " + quoted(column) +
                   (is_statistics_text(column) ? " TEXT" : " INTEGER"));
    }
  }
}

// Step i leads from version i to version i + 1.
constexpr std::array<void (*)(platform::Database&), kSchemaVersion> kSteps{create_tables, widen_statistics};

// "QVRC": marks a file as the suite's own.
constexpr std::int32_t kApplicationId = 0x51565243;

std::int32_t number_of(platform::Database& database, const std::string& sql) {
  const base::Rows rows = database.run(sql);
  return rows.empty() ? 0 : base::to_int32(rows[0].text(rows.columns()[0], "0"));
}

[[noreturn]] void refuse_newer(int version) {
  throw base::Fault("Database is too new", "The database has schema version " + std::to_string(version) +
                                               ", this program knows " + std::to_string(kSchemaVersion) +
                                               ". Use the newer version of the programs.");
}

}  // namespace

int schema_version(platform::Database& database) {
  if (number_of(database, "PRAGMA application_id") == kApplicationId)
    return number_of(database, "PRAGMA user_version");
  if (number_of(database, "SELECT COUNT(*) FROM sqlite_master") == 0) return 0;
  throw base::Fault("Database is foreign",
                    "The database file holds tables of another program. Move it away and run \"qvrcomctl "
                    "setup\".");
}

int migrate(platform::Database& database) {
  const int before = schema_version(database);
  if (before > kSchemaVersion) refuse_newer(before);
  if (before == kSchemaVersion) return before;
  database.transaction([&] {
    for (auto step = static_cast<std::size_t>(before); step < kSteps.size(); ++step)
      kSteps[step](database);
    database.run("PRAGMA application_id = " + std::to_string(kApplicationId));
    database.run("PRAGMA user_version = " + std::to_string(kSchemaVersion));
  });
  return before;
}

void require_schema(platform::Database& database) {
  const int version = schema_version(database);
  if (version > kSchemaVersion) refuse_newer(version);
  if (version == kSchemaVersion) return;
  const std::string detail = "The database has schema version " + std::to_string(version) +
                             ", this program needs " + std::to_string(kSchemaVersion) +
                             ". Run \"qvrcomctl setup\"";
  if (version == 0) throw base::Fault("Database is not set up", detail + ".");
  throw base::Fault("Database is too old",
                    detail + ": it brings the database up to date and keeps its rows.");
}

}  // namespace qvrcom::environment
