#include "adapters/machine_files.h"

#include <QCoreApplication>
#include <QDir>
#include <QSettings>

#include "adapters/files_posix.h"
#include "adapters/paths.h"
#include "base/fault.h"

namespace qvrcom::adapters {
namespace {

constexpr const char* kFolderKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Corbelin\\QVRCOM+\\Special Folders";

std::string full_key(platform::RegistryRoot root, const std::string& sub_key) {
  const bool machine = root == platform::RegistryRoot::kLocalMachine;
  return (machine ? "HKEY_LOCAL_MACHINE\\" : "HKEY_CURRENT_USER\\") + sub_key;
}

std::string registry_file(const std::string& folder) {
  return folder + "/machine.reg";
}

QString setting_key(const std::string& section, const std::string& key) {
  return QString::fromStdString(section + "/" + key);
}

}  // namespace

MachineFiles::MachineFiles(std::string config_folder) : config_folder_(std::move(config_folder)) {
  const FilesPosix files;
  const std::string file = registry_file(config_folder_);
  if (!files.file_exists(file)) return;
  try {
    registry_ = base::RegistryText::parse(files.read(file));
  } catch (const base::Fault& fault) {
    throw base::Fault(fault.description(), "\"" + file + "\": " + fault.detail());
  }
}

std::optional<std::string> MachineFiles::special_folder(std::int32_t identifier) const {
  const auto data = registry_.value(kFolderKey, std::to_string(identifier));
  if (!data) return std::nullopt;
  return data->bytes.substr(0, data->bytes.find('\0'));
}

bool MachineFiles::registry_key_exists(platform::RegistryRoot root, const std::string& sub_key) const {
  return registry_.has_key(full_key(root, sub_key));
}

std::optional<platform::RegistryData> MachineFiles::registry_value(platform::RegistryRoot root,
                                                                   const std::string& sub_key,
                                                                   const std::string& name) const {
  return registry_.value(full_key(root, sub_key), name);
}

std::optional<std::string> MachineFiles::setting(const std::string& application, const std::string& section,
                                                 const std::string& key) const {
  const QSettings settings(QString::fromStdString(settings_file(application)), QSettings::IniFormat);
  const QVariant value = settings.value(setting_key(section, key));
  if (!value.isValid()) return std::nullopt;
  return value.toString().toStdString();
}

std::string MachineFiles::program_folder() const {
  return suite_path(QCoreApplication::applicationDirPath().toStdString());
}

void MachineFiles::set_special_folder(std::int32_t identifier, const std::string& path) {
  store(kFolderKey, std::to_string(identifier), path);
}

void MachineFiles::set_registry_text(platform::RegistryRoot root, const std::string& sub_key,
                                     const std::string& name, const std::string& text) {
  store(full_key(root, sub_key), name, text);
}

void MachineFiles::set_setting(const std::string& application, const std::string& section,
                               const std::string& key, const std::string& value) {
  if (setting(application, section, key) == value) return;
  const std::string file = settings_file(application);
  QSettings settings(QString::fromStdString(file), QSettings::IniFormat);
  settings.setValue(setting_key(section, key), QString::fromStdString(value));
  settings.sync();
  if (settings.status() != QSettings::NoError) {
    throw base::Fault("Path/File access error", "The settings file \"" + file +
                                                    "\" cannot be written. Check the rights of its folder.");
  }
}

void MachineFiles::store(const std::string& key, const std::string& name, const std::string& text) {
  const std::string before = registry_.text();
  registry_.set_text(key, name, text);
  const std::string after = registry_.text();
  if (after == before) return;
  if (!QDir().mkpath(QString::fromStdString(config_folder_))) {
    throw base::Fault("Path/File access error", "The folder \"" + config_folder_ + "\" cannot be made.");
  }
  FilesPosix().replace(registry_file(config_folder_), after);
}

std::string MachineFiles::settings_file(const std::string& application) const {
  return config_folder_ + "/" + application + ".ini";
}

}  // namespace qvrcom::adapters
