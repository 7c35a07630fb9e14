#include "environment/set_up.h"

#include "base/fault.h"
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

// Why nothing can be done with what lies there.
std::string trouble_at(const platform::Files& files, const std::string& path) {
  if (files.is_link(path)) return "It is a link to something that is not there or cannot be reached.";
  const auto fault = base::fault_of([&] { files.length(path); });
  return fault ? fault->detail() : "Something else has its name.";
}

Lack absence_of(const std::string& name) {
  return {name + " is not there. Run \"qvrcomctl setup\".", true};
}

// Of what is not what it should be.
Lack lack_of(const platform::Files& files, const std::string& name, const std::string& path) {
  const std::string named = name + ' ' + files.native(path);
  if (!files.is_taken(path)) return absence_of(named);
  return {named + " cannot be used. " + trouble_at(files, path), false};
}

// Where a root of the suite may lie, in the order in which FilesAndFolders looks.
std::vector<std::string> root_candidates(const platform::Machine& machine, std::int32_t identifier,
                                         const char* value_name) {
  std::vector<std::string> folders;
  if (const auto special = machine.special_folder(identifier)) folders.push_back(*special);
  const auto data = machine.registry_value(RegistryRoot::kLocalMachine, kShellFoldersKey, value_name);
  if (data && !data->bytes.empty()) folders.push_back(data->bytes.substr(0, data->bytes.size() - 1));
  for (std::string& folder : folders)
    folder += std::string("\\") + kMakerFolder + "\\" + kSuiteFolder;
  return folders;
}

struct Root {
  std::string path;          // with a backslash at its end
  std::optional<Lack> lack;  // where there is none
};

Root root_of(const platform::Machine& machine, const platform::Files& files, std::int32_t identifier,
             const char* value_name, const std::string& name) {
  const auto candidates = root_candidates(machine, identifier, value_name);
  for (const std::string& folder : candidates)
    if (files.folder_exists(folder)) return {folder + "\\", std::nullopt};
  for (const std::string& folder : candidates)
    if (files.is_taken(folder)) return {{}, lack_of(files, name, folder)};
  return {{}, absence_of(name)};
}

enum class Database { kLeftOut, kLookedAt };

std::optional<Lack> find_lack(const platform::Machine& machine, const platform::Files& files,
                              Database database) {
  const Root data = root_of(machine, files, kCommonAppDataIdentifier, kCommonAppDataValue,
                            "The application-data folder of QVRCOM+");
  if (data.lack) return data.lack;
  const Root documents = root_of(machine, files, kCommonDocumentsIdentifier, kCommonDocumentsValue,
                                 "The documents folder of QVRCOM+");
  if (documents.lack) return documents.lack;
  const std::string scheduler = data.path + kSchedulerFolder;
  if (!files.folder_exists(scheduler)) return lack_of(files, "The folder", scheduler);
  const std::string file = data.path + kDatabaseFolder + "\\" + kDatabaseFile;
  if (database == Database::kLeftOut || files.file_exists(file)) return std::nullopt;
  return lack_of(files, "The database", file);
}

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

std::optional<Lack> missing_set_up(const platform::Machine& machine, const platform::Files& files) {
  return find_lack(machine, files, Database::kLookedAt);
}

std::optional<std::string> missing_folders(const platform::Machine& machine, const platform::Files& files) {
  const auto lack = find_lack(machine, files, Database::kLeftOut);
  return lack ? std::optional(lack->text) : std::nullopt;
}

}  // namespace qvrcom::environment
