#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "base/session_values.h"
#include "platform/files.h"
#include "platform/machine.h"

namespace qvrcom::environment {

// A registry value with its type: nothing, a text, bytes or a 32-bit number.
using RegistryValue = std::variant<std::monostate, std::string, std::vector<std::byte>, std::int32_t>;

// Where the suite's folders and files lie. Every folder ends in a backslash; none is created here, and a
// missing one is no error.
class FilesAndFolders {
 public:
  FilesAndFolders(const platform::Machine& machine, const platform::Files& files)
      : machine_(machine), files_(files) {}

  // The shell folder without a backslash at its end, "" when the machine cannot resolve it.
  std::string GetSpecialFolderPath(std::int32_t identifier) const;

  // `substitute` when the key cannot be opened. Fault "Unsupported value type" (error 1001) when the value is
  // absent or of a type that has no place here.
  RegistryValue GetRegistryValue(platform::RegistryRoot root, const std::string& sub_key,
                                 const std::string& name, RegistryValue substitute = {}) const;

  std::string GetCommonDocumentsPath() const;
  std::string GetCommonAppDataPath() const;

  // The machine folder by identifier; when the suite's folder is not there, by the registry, unchecked.
  std::string GetAppDataRoot() const;
  std::string GetAppDocsRoot() const;

  // `sub_folder` is the site's folder, between the documents root and the kind of file; may be empty.
  std::string GetMsgsFolder(const std::string& sub_folder) const;
  std::string GetStatsFolder(const std::string& sub_folder) const;
  std::string GetSAMELogsFolder() const;
  // Where files go that a device no longer has when their job did not end well.
  std::string GetRescuedFolder() const;
  std::string GetDatabaseFolder() const;
  std::string GetSchedulerFolder() const;
  std::string GetLogsFolder() const;

  // The setting "AppPath", or the folder of the running program.
  std::string GetAppPath() const;

  std::string GetConnectionString() const;

 private:
  std::string shell_folder_text(const char* value_name) const;
  std::string root(std::int32_t identifier, const char* value_name) const;
  std::string documents_folder(const std::string& sub_folder, const char* name) const;

  const platform::Machine& machine_;
  const platform::Files& files_;
};

// The session's scheduler folder, resolved on first use and kept in the run values.
const std::string& scheduler_folder(base::RunValues& run, const FilesAndFolders& folders);

}  // namespace qvrcom::environment
