#pragma once

#include "doubles/memory_machine.h"

namespace qvrcom::doubles {

// A machine whose configuration can be written, as set-up does. Counts the writes.
class SettableMachine : public MemoryMachine, public platform::MachineSetup {
 public:
  std::unique_ptr<platform::SetUpHold> hold() override { return std::make_unique<platform::SetUpHold>(); }
  void set_special_folder(std::int32_t identifier, const std::string& path) override {
    special_folders[identifier] = path;
    ++writes;
  }
  void set_registry_text(platform::RegistryRoot, const std::string& sub_key, const std::string& name,
                         const std::string& text) override {
    registry_keys.insert(sub_key);
    registry_values[{sub_key, name}] = {1, text + '\0'};
    ++writes;
  }
  void set_setting(const std::string& application, const std::string& section, const std::string& key,
                   const std::string& value) override {
    settings[{application, section, key}] = value;
    ++writes;
  }

  int writes = 0;
};

}  // namespace qvrcom::doubles
