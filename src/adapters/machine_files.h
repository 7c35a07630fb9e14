#pragma once

#include <string>

#include "base/registry_text.h"
#include "platform/machine.h"

namespace qvrcom::adapters {

// The machine's configuration in two files of one folder: "machine.reg" holds the registry values (and the
// shell folders by identifier, in a key of the suite), "QVRCOM+.ini" the user settings.
class MachineFiles : public platform::Machine, public platform::MachineSetup {
 public:
  // Both are native. Reads "machine.reg" if it is there; Fault when it is damaged. "set-up.lock" beside it
  // lets one set-up write at a time. With a `root` (QVRCOM_ROOT) the texts of folders below it are kept as
  // "%QVRCOM_ROOT%\\..." and read back against the present one, so that a copy or a moved folder works on
  // itself. Reading a folder outside of it, or one of a root when there is none, is a Fault.
  explicit MachineFiles(std::string config_folder, const std::string& root = {});

  std::optional<std::string> special_folder(std::int32_t identifier) const override;
  bool registry_key_exists(platform::RegistryRoot root, const std::string& sub_key) const override;
  std::optional<platform::RegistryData> registry_value(platform::RegistryRoot root,
                                                       const std::string& sub_key,
                                                       const std::string& name) const override;
  std::optional<std::string> setting(const std::string& application, const std::string& section,
                                     const std::string& key) const override;
  std::string program_folder() const override;

  std::unique_ptr<platform::SetUpHold> hold() override;
  void set_special_folder(std::int32_t identifier, const std::string& path) override;
  void set_registry_text(platform::RegistryRoot root, const std::string& sub_key, const std::string& name,
                         const std::string& text) override;
  void set_setting(const std::string& application, const std::string& section, const std::string& key,
                   const std::string& value) override;

 private:
  void read_registry();
  std::string with_root(const std::string& text) const;
  std::string without_root(const std::string& text) const;
  void store(const std::string& key, const std::string& name, const std::string& text);
  std::string settings_file(const std::string& application) const;

  std::string config_folder_;
  std::string root_;  // suite path
  base::RegistryText registry_;
};

}  // namespace qvrcom::adapters
