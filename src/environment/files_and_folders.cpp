#include "environment/files_and_folders.h"

#include <algorithm>

#include "base/fault.h"
#include "environment/names.h"

namespace qvrcom::environment {
namespace {

using platform::RegistryData;

std::string suite_folder(const std::string& machine_folder) {
  return machine_folder + "\\" + kMakerFolder + "\\" + kSuiteFolder + "\\";
}

std::string without_tail(const std::string& bytes, std::size_t tail) {
  return bytes.substr(0, bytes.size() - std::min(tail, bytes.size()));
}

std::vector<std::byte> as_bytes(const std::string& bytes) {
  std::vector<std::byte> result(bytes.size());
  std::transform(bytes.begin(), bytes.end(), result.begin(),
                 [](char c) { return static_cast<std::byte>(c); });
  return result;
}

std::int32_t little_endian(const std::string& bytes) {
  std::uint32_t number = 0;
  for (std::size_t i = std::min<std::size_t>(4, bytes.size()); i-- > 0;)
    number = number << 8U | static_cast<unsigned char>(bytes[i]);
  return static_cast<std::int32_t>(number);
}

}  // namespace

std::string FilesAndFolders::GetSpecialFolderPath(std::int32_t identifier) const {
  const std::string path = machine_.special_folder(identifier).value_or("");
  return path.substr(0, path.find('\0'));
}

RegistryValue FilesAndFolders::GetRegistryValue(platform::RegistryRoot root, const std::string& sub_key,
                                                const std::string& name, RegistryValue substitute) const {
  if (!machine_.registry_key_exists(root, sub_key)) return substitute;
  const RegistryData data = machine_.registry_value(root, sub_key, name).value_or(RegistryData{});
  switch (data.type) {
    case RegistryData::kText:
    case RegistryData::kExpandableText:
      return without_tail(data.bytes, 1);
    case RegistryData::kBinary:
      return as_bytes(data.bytes);
    case RegistryData::kNumber:
      return little_endian(data.bytes);
    case RegistryData::kMultiText:
      return without_tail(data.bytes, 2);
    default:
      throw base::Fault("Unsupported value type", "Error 1001: the value \"" + name + "\" of \"" + sub_key +
                                                      "\" is missing or of type " +
                                                      std::to_string(data.type) + ".");
  }
}

std::string FilesAndFolders::shell_folder_text(const char* value_name) const {
  const RegistryValue value =
      GetRegistryValue(platform::RegistryRoot::kLocalMachine, kShellFoldersKey, value_name, std::string{});
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  throw base::Fault(base::kTypeMismatch, "The value \"" + std::string(value_name) + "\" of \"" +
                                             kShellFoldersKey + "\" is no text.");
}

std::string FilesAndFolders::GetCommonDocumentsPath() const {
  return shell_folder_text(kCommonDocumentsValue);
}
std::string FilesAndFolders::GetCommonAppDataPath() const {
  return shell_folder_text(kCommonAppDataValue);
}

std::string FilesAndFolders::root(std::int32_t identifier, const char* value_name) const {
  const std::string candidate = suite_folder(GetSpecialFolderPath(identifier));
  return files_.folder_exists(candidate) ? candidate : suite_folder(shell_folder_text(value_name));
}

std::string FilesAndFolders::GetAppDataRoot() const {
  return root(kCommonAppDataIdentifier, kCommonAppDataValue);
}
std::string FilesAndFolders::GetAppDocsRoot() const {
  return root(kCommonDocumentsIdentifier, kCommonDocumentsValue);
}

std::string FilesAndFolders::documents_folder(const std::string& sub_folder, const char* name) const {
  const std::string site_part = sub_folder.empty() ? std::string{} : sub_folder + "\\";
  return GetAppDocsRoot() + site_part + name + "\\";
}

std::string FilesAndFolders::GetMsgsFolder(const std::string& sub_folder) const {
  return documents_folder(sub_folder, kMsgsFolder);
}
std::string FilesAndFolders::GetStatsFolder(const std::string& sub_folder) const {
  return documents_folder(sub_folder, kStatsFolder);
}
std::string FilesAndFolders::GetSAMELogsFolder() const {
  return documents_folder({}, kSameLogsFolder);
}
std::string FilesAndFolders::GetRescuedFolder() const {
  return documents_folder({}, kRescuedFolder);
}
std::string FilesAndFolders::GetDatabaseFolder() const {
  return GetAppDataRoot() + kDatabaseFolder + "\\";
}
std::string FilesAndFolders::GetSchedulerFolder() const {
  return GetAppDataRoot() + kSchedulerFolder + "\\";
}
std::string FilesAndFolders::GetLogsFolder() const {
  return GetAppDataRoot() + kLogsFolder + "\\";
}

std::string FilesAndFolders::GetAppPath() const {
  std::string path = machine_.setting(kSettingsApplication, kSettingsSection, kAppPathSetting)
                         .value_or(machine_.program_folder());
  if (!path.ends_with('\\')) path += '\\';
  return path;
}

std::string FilesAndFolders::GetConnectionString() const {
  return "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + GetDatabaseFolder() + kDatabaseFile;
}

const std::string& scheduler_folder(base::RunValues& run, const FilesAndFolders& folders) {
  if (run.SchedulerFolder.empty()) run.SchedulerFolder = folders.GetSchedulerFolder();
  return run.SchedulerFolder;
}

}  // namespace qvrcom::environment
