#include "siterules/firmware_rules.h"

#include <cstdint>
#include <string_view>

#include "base/number.h"
#include "environment/names.h"
#include "siterules/firmware_table.h"

namespace qvrcom::siterules {
namespace {

bool is_unknown(std::string_view version) {
  return version.empty() || version == "0";
}

}  // namespace

std::string FirmwareRules::Version_Compactibility(const std::string& version,
                                                  const std::string& machine_type) const {
  return trap_("Version_Compactibility", [&]() -> std::string {
    const std::int16_t type = base::to_int16(machine_type);
    if (type != 2 && type != 3) return {};
    if (const Firmware* firmware = firmware_of(type, version))
      return firmware->is_current ? kCompatible : kBackwardCompatible;
    return is_unknown(version) ? kNoFirmwareVersion : kNotCompatible;
  });
}

std::string FirmwareRules::Check_Firmware_Version(const std::string& version) const {
  return trap_("Check_Firmware_Version", [&]() -> std::string {
    if (is_unknown(version)) return kNoFirmwareVersion;
    const Firmware* firmware = firmware_of(version);
    const bool is_old = firmware != nullptr && firmware->has_old_statistics;
    return is_old ? environment::kOldStats : environment::kNewStats;
  });
}

}  // namespace qvrcom::siterules
