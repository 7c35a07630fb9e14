#include "adapters/machine_files.h"

#include <QCoreApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <utility>

#include "adapters/file_lock.h"
#include "adapters/files_posix.h"
#include "adapters/plain_file.h"
#include "adapters/posix_fault.h"
#include "base/fault.h"
#include "base/text.h"

namespace qvrcom::adapters {
namespace {

constexpr std::chrono::seconds kLongestSetUp{30};
constexpr const char* kFolderKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Corbelin\\QVRCOM+\\Special Folders";

constexpr std::string_view kRoot = "%QVRCOM_ROOT%";

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

// "" when there is none. Fault for a file that holds no settings; the settings' own reader would take one,
// and one that it may not read, for an empty one.
std::string settings_text(const std::string& file) {
  std::string text = FilesPosix().read_or_empty(suite_path(file));
  for (std::string_view line : base::lines_of(text)) {
    line = base::trim(line);
    const bool is_section = line.starts_with('[') && line.ends_with(']');
    if (line.empty() || line.starts_with(';') || is_section || line.find('=') != std::string_view::npos)
      continue;
    throw base::Fault("Bad file format",
                      "\"" + file +
                          "\" is not a settings file: every line of one is a [section], a "
                          "key=value, empty or begins with \";\". Correct it, or remove it and "
                          "run \"qvrcomctl setup\".");
  }
  return text;
}

// The settings' own writer, at work on a copy: it would make the file with rights of its own, follow a link
// in its place and wait for locks that a power failure left.
std::string with_setting(const std::string& before, const QString& key, const QString& value) {
  const QTemporaryDir folder;
  const QString copy = folder.filePath(QStringLiteral("settings.ini"));
  FilesPosix files;
  const std::string path = suite_path(copy.toStdString());
  files.save(path, before, platform::Readers::kOwner);
  QSettings settings(copy, QSettings::IniFormat);
  settings.setValue(key, value);
  settings.sync();
  if (settings.status() != QSettings::NoError)
    throw base::Fault("Path/File access error", "The settings cannot be written to \"" + copy.toStdString() +
                                                    "\". Check the temporary folder.");
  return files.read(path);
}

}  // namespace

MachineFiles::MachineFiles(std::string config_folder, const std::string& root)
    : config_folder_(std::move(config_folder)), root_(root.empty() ? "" : suite_path(root)) {
  read_registry();
}

void MachineFiles::read_registry() {
  const FilesPosix files;
  const std::string file = suite_path(registry_file(config_folder_));
  if (!files.is_taken(file)) return;
  if (const auto fault = base::fault_of([&] { need_plain(files.native(file)); }))
    throw base::Fault(
        fault->description(),
        fault->detail() + " Put the file back, or remove what is there and run \"qvrcomctl setup\".");
  const std::string text = files.read(file);
  if (const auto fault = base::fault_of([&] { registry_ = base::RegistryText::parse(text); }))
    throw base::Fault(fault->description(), "\"" + files.native(file) + "\": " + fault->detail());
}

// "%QVRCOM_ROOT%\..." of a folder below the root; any other text as it is.
std::string MachineFiles::without_root(const std::string& text) const {
  const bool below = !root_.empty() && text.starts_with(root_) &&
                     (text.size() == root_.size() || text[root_.size()] == '\\');
  return below ? std::string(kRoot) + text.substr(root_.size()) : text;
}

// The text with the present root. A registry that came from elsewhere must not lead to what lies there.
std::string MachineFiles::with_root(const std::string& text) const {
  const bool marked = text.starts_with(kRoot);
  if (marked && !root_.empty()) return root_ + text.substr(kRoot.size());
  if (!marked && (root_.empty() || !text.starts_with('\\') || without_root(text) != text)) return text;
  const std::string reason = marked
                                 ? ", but QVRCOM_ROOT is not set. Set it to the folder that holds this set-up"
                                 : ", which does not lie below QVRCOM_ROOT. Write \"" + std::string(kRoot) +
                                       "\" for that folder there";
  throw base::Fault("Path not found", "\"" + registry_file(config_folder_) + "\" names the folder \"" +
                                          FilesPosix().native(text) + "\"" + reason +
                                          ", or remove the file and run \"qvrcomctl setup\".");
}

std::optional<std::string> MachineFiles::special_folder(std::int32_t identifier) const {
  const auto data = registry_.value(kFolderKey, std::to_string(identifier));
  if (!data) return std::nullopt;
  return with_root(data->bytes.substr(0, data->bytes.find('\0')));
}

bool MachineFiles::registry_key_exists(platform::RegistryRoot root, const std::string& sub_key) const {
  return registry_.has_key(full_key(root, sub_key));
}

std::optional<platform::RegistryData> MachineFiles::registry_value(platform::RegistryRoot root,
                                                                   const std::string& sub_key,
                                                                   const std::string& name) const {
  auto data = registry_.value(full_key(root, sub_key), name);
  if (data && data->type == base::RegistryData::kText)
    data->bytes = with_root(data->bytes.substr(0, data->bytes.find('\0'))) + '\0';
  return data;
}

std::optional<std::string> MachineFiles::setting(const std::string& application, const std::string& section,
                                                 const std::string& key) const {
  const std::string file = settings_file(application);
  if (settings_text(file).empty()) return std::nullopt;
  const QSettings settings(QString::fromStdString(file), QSettings::IniFormat);
  const QVariant value = settings.value(setting_key(section, key));
  if (!value.isValid()) return std::nullopt;
  return value.toString().toStdString();
}

std::string MachineFiles::program_folder() const {
  return suite_path(QCoreApplication::applicationDirPath().toStdString());
}

std::unique_ptr<platform::SetUpHold> MachineFiles::hold() {
  struct Hold : platform::SetUpHold {
    explicit Hold(FileLock taken) : lock(std::move(taken)) {}
    FileLock lock;
  };
  if (!make_folders(config_folder_))
    throw base::Fault("Path/File access error", "The folder \"" + config_folder_ + "\" cannot be made.");
  FileLock lock = FileLock::take(config_folder_ + "/set-up.lock", "Setting this machine up", kLongestSetUp);
  read_registry();
  return std::make_unique<Hold>(std::move(lock));
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
  const std::string text =
      with_setting(settings_text(file), setting_key(section, key), QString::fromStdString(value));
  FilesPosix().replace(suite_path(file), text);
}

void MachineFiles::store(const std::string& key, const std::string& name, const std::string& text) {
  const std::string before = registry_.text();
  registry_.set_text(key, name, without_root(text));
  const std::string after = registry_.text();
  if (after == before) return;
  FilesPosix().replace(suite_path(registry_file(config_folder_)), after);
}

std::string MachineFiles::settings_file(const std::string& application) const {
  return config_folder_ + "/" + application + ".ini";
}

}  // namespace qvrcom::adapters
