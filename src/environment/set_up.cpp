#include "environment/set_up.h"

#include "base/number.h"
#include "environment/names.h"
#include "environment/schema.h"

namespace qvrcom::environment {
namespace {

using platform::RegistryRoot;

std::int32_t count(platform::Database& database, const std::string& what) {
  return base::to_int32(database.run("SELECT COUNT(*) AS Found FROM " + what)[0].text("Found", "0"));
}

// Sites whose statistics settings row is missing.
constexpr const char* kWithoutStatisticsSettings =
    "Site WHERE SiteID NOT IN (SELECT SiteID FROM File_Handling WHERE FileType = 'Statistics' AND SiteID IS "
    "NOT NULL)";

// A row that a fresh database begins with, inserted where the test finds none.
struct Seed {
  const char* what;
  const char* test;
  const char* insert;
};

constexpr Seed kSeeds[] = {
    {"the session row", "SessionQVR", "INSERT INTO SessionQVR (SiteID) VALUES (NULL)"},
    {"the user \"admin\"", "Users", "INSERT INTO Users (LoginName, \"Current\") VALUES ('admin', 1)"},
    {"configuration 1", "Configurations", "INSERT INTO Configurations (ID, \"Current\") VALUES (1, 1)"},
    {"the settings of configuration 1", "QVRSettings WHERE ConfigID = 1",
     "INSERT INTO QVRSettings (ConfigID, PartitionID, MaxPartitionNo, Machine_Type_ID, ControlCardType) "
     "VALUES (1, 1, 64, 2, 'NEW')"},
    {"the 64 partitions of configuration 1", "Partition_Settings WHERE Config_ID = 1",
     "WITH RECURSIVE Numbers(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM Numbers WHERE n < 64) "
     "INSERT INTO Partition_Settings (Config_ID, PartitionID) SELECT 1, n FROM Numbers"},
};

// The root that FilesAndFolders would answer with, or nothing where it could not answer.
std::optional<std::string> found_root(const platform::Machine& machine, const platform::Files& files,
                                      std::int32_t identifier, const char* value_name) {
  const auto of = [](const std::string& folder) {
    return folder + "\\" + kMakerFolder + "\\" + kSuiteFolder + "\\";
  };
  const auto special = machine.special_folder(identifier);
  if (special && files.folder_exists(of(*special))) return of(*special);
  const auto data = machine.registry_value(RegistryRoot::kLocalMachine, kShellFoldersKey, value_name);
  if (!data || data->bytes.empty()) return std::nullopt;
  const std::string fallback = of(data->bytes.substr(0, data->bytes.size() - 1));
  return files.folder_exists(fallback) ? std::optional(fallback) : std::nullopt;
}

constexpr const char* kAdvice = " Run \"qvrcomctl setup\".";

}  // namespace

std::vector<std::string> SetUp::run(const MachineFolders& machine_folders) {
  const auto hold = setup_.hold();
  done_.clear();
  configure(machine_folders);
  make_folders();
  make_database();
  return std::move(done_);
}

void SetUp::configure(const MachineFolders& machine_folders) {
  set_machine_folder(kCommonAppDataIdentifier, kCommonAppDataValue, machine_folders.application_data);
  set_machine_folder(kCommonDocumentsIdentifier, kCommonDocumentsValue, machine_folders.documents);

  // The programs may have moved since the last set-up: the setting follows them.
  const std::string app_path = machine_folders.application + "\\";
  if (machine_.setting(kSettingsApplication, kSettingsSection, kAppPathSetting) == app_path) return;
  setup_.set_setting(kSettingsApplication, kSettingsSection, kAppPathSetting, app_path);
  done_.push_back("Application folder: " + files_.native(app_path));
}

void SetUp::set_machine_folder(std::int32_t identifier, const char* value_name, const std::string& path) {
  const auto known = machine_.special_folder(identifier);
  if (!known) {
    setup_.set_special_folder(identifier, path);
    done_.push_back("Folder " + std::to_string(identifier) + ": " + files_.native(path));
  }
  if (machine_.registry_value(RegistryRoot::kLocalMachine, kShellFoldersKey, value_name)) return;
  setup_.set_registry_text(RegistryRoot::kLocalMachine, kShellFoldersKey, value_name, known.value_or(path));
  done_.push_back("\"" + std::string(value_name) + "\": " + files_.native(known.value_or(path)));
}

void SetUp::make_folders() {
  const std::string suite = std::string("\\") + kMakerFolder + "\\" + kSuiteFolder;
  const std::string data = folders_.GetSpecialFolderPath(kCommonAppDataIdentifier) + suite;
  make_folder_chain(data + "\\" + kDatabaseFolder);
  make_folder_chain(data + "\\" + kSchedulerFolder);
  make_folder_chain(data + "\\" + kLogsFolder);
  make_folder_chain(folders_.GetSpecialFolderPath(kCommonDocumentsIdentifier) + suite);
}

void SetUp::make_folder_chain(const std::string& path) {
  if (path.empty() || files_.folder_exists(path)) return;
  make_folder_chain(path.substr(0, path.find_last_of('\\')));
  files_.make_folder(path);
  done_.push_back("Made the folder " + files_.native(path));
}

void SetUp::make_database() {
  const std::string path = folders_.GetDatabaseFolder() + kDatabaseFile;
  const std::string text = folders_.GetConnectionString();
  const auto database = files_.file_exists(path) ? engine_.open(text) : engine_.create(text);
  const int before = migrate(*database);
  if (before != kSchemaVersion) {
    done_.push_back("Database " + files_.native(path) + ": schema version " + std::to_string(before) +
                    " to " + std::to_string(kSchemaVersion));
  }
  database->transaction([&] { seed(*database); });
}

void SetUp::seed(platform::Database& database) {
  for (const Seed& one : kSeeds) {
    if (count(database, one.test) != 0) continue;
    database.run(one.insert);
    done_.push_back(std::string("Database: added ") + one.what);
  }
  if (const auto added = add_missing_statistics_settings(database); added != 0)
    done_.push_back("Database: added statistics settings of " + std::to_string(added) + " sites");
}

std::size_t add_missing_statistics_settings(platform::Database& database) {
  const std::int32_t missing = count(database, kWithoutStatisticsSettings);
  if (missing == 0) return 0;
  database.run(
      "INSERT INTO File_Handling (SiteID, FileType, DefaultPathname, DefaultFilename, AutoIncrements) "
      "SELECT SiteID, 'Statistics', NULL, NULL, '' FROM " +
      std::string(kWithoutStatisticsSettings));
  return static_cast<std::size_t>(missing);
}

std::optional<std::string> missing_folders(const platform::Machine& machine, const platform::Files& files) {
  const std::string advice = kAdvice;
  const auto data = found_root(machine, files, kCommonAppDataIdentifier, kCommonAppDataValue);
  if (!data) return "The application-data folder of QVRCOM+ is not there." + advice;
  if (!found_root(machine, files, kCommonDocumentsIdentifier, kCommonDocumentsValue))
    return "The documents folder of QVRCOM+ is not there." + advice;
  if (const std::string scheduler = *data + kSchedulerFolder; !files.folder_exists(scheduler))
    return "The folder " + files.native(scheduler) + " is not there." + advice;
  return std::nullopt;
}

std::optional<std::string> missing_set_up(const platform::Machine& machine, const platform::Files& files) {
  if (const auto missing = missing_folders(machine, files)) return missing;
  const auto data = found_root(machine, files, kCommonAppDataIdentifier, kCommonAppDataValue);
  const std::string database = *data + kDatabaseFolder + "\\" + kDatabaseFile;
  if (!files.file_exists(database))
    return "The database " + files.native(database) + " is not there." + kAdvice;
  return std::nullopt;
}

}  // namespace qvrcom::environment
