#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "base/registry_text.h"

namespace qvrcom::platform {

enum class RegistryRoot { kLocalMachine, kCurrentUser };

// Type number (1 text, 2 expandable text, 3 binary, 4 32-bit number, 7 multi-text) and raw bytes.
using RegistryData = base::RegistryData;

// The machine's configuration: shell folders, registry values, the per-user settings store.
class Machine {
 public:
  virtual ~Machine() = default;

  // Shell folder of an identifier (35 application data, 46 documents), no backslash at its end; nothing when
  // the machine cannot resolve it.
  virtual std::optional<std::string> special_folder(std::int32_t identifier) const = 0;

  // Whether a sub-key can be opened, and the value in it.
  virtual bool registry_key_exists(RegistryRoot root, const std::string& sub_key) const = 0;
  virtual std::optional<RegistryData> registry_value(RegistryRoot root, const std::string& sub_key,
                                                     const std::string& name) const = 0;

  virtual std::optional<std::string> setting(const std::string& application, const std::string& section,
                                             const std::string& key) const = 0;

  // Folder of the running program, no backslash at its end.
  virtual std::string program_folder() const = 0;
};

// A set-up's right to be the only one on the machine, for as long as the object lives.
struct SetUpHold {
  virtual ~SetUpHold() = default;
};

// Writes what `Machine` reads; set-up alone uses it.
class MachineSetup {
 public:
  virtual ~MachineSetup() = default;

  // Waits until no other program sets the machine up; what it has written is seen from here on. Fault when it
  // takes too long.
  virtual std::unique_ptr<SetUpHold> hold() = 0;

  virtual void set_special_folder(std::int32_t identifier, const std::string& path) = 0;
  virtual void set_registry_text(RegistryRoot root, const std::string& sub_key, const std::string& name,
                                 const std::string& text) = 0;
  virtual void set_setting(const std::string& application, const std::string& section, const std::string& key,
                           const std::string& value) = 0;
};

}  // namespace qvrcom::platform
