#pragma once

#include <map>
#include <set>
#include <tuple>

#include "platform/machine.h"

namespace qvrcom::doubles {

class MemoryMachine : public platform::Machine {
 public:
  std::optional<std::string> special_folder(std::int32_t identifier) const override {
    return find(special_folders, identifier);
  }
  bool registry_key_exists(platform::RegistryRoot, const std::string& sub_key) const override {
    return registry_keys.contains(sub_key);
  }
  std::optional<platform::RegistryData> registry_value(platform::RegistryRoot, const std::string& sub_key,
                                                       const std::string& name) const override {
    return find(registry_values, std::pair(sub_key, name));
  }
  std::optional<std::string> setting(const std::string& application, const std::string& section,
                                     const std::string& key) const override {
    return find(settings, std::tuple(application, section, key));
  }
  std::string program_folder() const override { return "\\opt\\qvrcom"; }

  std::map<std::int32_t, std::string> special_folders;
  std::set<std::string> registry_keys;
  std::map<std::pair<std::string, std::string>, platform::RegistryData> registry_values;
  std::map<std::tuple<std::string, std::string, std::string>, std::string> settings;

 private:
  template <class Map, class Key>
  static auto find(const Map& map, const Key& key) -> std::optional<typename Map::mapped_type> {
    const auto found = map.find(key);
    if (found == map.end()) return std::nullopt;
    return found->second;
  }
};

}  // namespace qvrcom::doubles
