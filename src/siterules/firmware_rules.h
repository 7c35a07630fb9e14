#pragma once

#include <string>

#include "platform/trap.h"

namespace qvrcom::siterules {

inline constexpr const char* kCompatible = "COMPATIBILITY";
inline constexpr const char* kBackwardCompatible = "BACKWARD COMPATIBILITY";
inline constexpr const char* kNotCompatible = "NOT COMPATIBILITY";
inline constexpr const char* kNoFirmwareVersion = "NO_FIRMWARE_VERSION";

// What a firmware version text allows. Versions are compared as exact texts, never as numbers.
class FirmwareRules {
 public:
  explicit FirmwareRules(const platform::Trap& trap) : trap_(trap) {}

  // One of the four verdicts above for machine type 2 or 3, "" for any other.
  std::string Version_Compactibility(const std::string& version, const std::string& machine_type) const;

  // environment::kNewStats, environment::kOldStats or kNoFirmwareVersion.
  std::string Check_Firmware_Version(const std::string& version) const;

 private:
  platform::Trap trap_;
};

}  // namespace qvrcom::siterules
