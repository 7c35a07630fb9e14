#include "siterules/firmware_rules.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

#include "base/number.h"
#include "environment/names.h"

namespace qvrcom::siterules {
namespace {

// "6.60" to "6.69": major version, first and last of the two digits behind the point.
struct VersionRange {
  int major;
  int first;
  int last;
};

struct VersionList {
  std::span<const VersionRange> ranges;
  std::span<const std::string_view> letters;  // versions that are no plain numbers
};

constexpr VersionRange kCurrent2[] = {{6, 60, 69}, {6, 80, 89}};  // 6.70 to 6.79 cannot be worked with
constexpr VersionRange kOlder2[] = {{5, 0, 2}, {5, 10, 29}, {6, 0, 59}};
constexpr std::string_view kOlderLetters2[] = {"5.bm", "5.bn", "5.bp", "05.C0", "5.ca",
                                               "5.CB", "5.CC", "5.cf", "5.cg",  "6.ac"};
constexpr VersionRange kCurrent3[] = {{1, 30, 39}};
constexpr VersionRange kOlder3[] = {{1, 0, 30}};

struct MachineVersions {
  std::int16_t machine_type;
  VersionList current;
  VersionList older;
};

const MachineVersions kMachines[] = {
    {2, {kCurrent2, {}}, {kOlder2, kOlderLetters2}},
    {3, {kCurrent3, {}}, {kOlder3, {}}},
};

// Firmware with the old statistics files. 5.02 and 5.CC have the new ones although they are of that age.
constexpr std::string_view kOldStatistics[] = {"5.00", "5.01",  "5.bm", "5.bn",
                                               "5.bp", "05.C0", "5.ca", "5.CB"};

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

bool contains(std::span<const std::string_view> list, std::string_view text) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

// Exactly one digit, the point and two digits: "6.6" and " 6.60" are in no range.
bool contains(const VersionList& list, std::string_view version) {
  if (contains(list.letters, version)) return true;
  if (version.size() != 4 || version[1] != '.' || !is_digit(version[0]) || !is_digit(version[2]) ||
      !is_digit(version[3]))
    return false;
  const int major = version[0] - '0';
  const int minor = (version[2] - '0') * 10 + (version[3] - '0');
  return std::any_of(list.ranges.begin(), list.ranges.end(), [&](const VersionRange& range) {
    return range.major == major && range.first <= minor && minor <= range.last;
  });
}

bool is_unknown(std::string_view version) {
  return version.empty() || version == "0";
}

std::string verdict(const MachineVersions& machine, std::string_view version) {
  if (contains(machine.current, version)) return kCompatible;
  if (contains(machine.older, version)) return kBackwardCompatible;
  return is_unknown(version) ? kNoFirmwareVersion : kNotCompatible;
}

}  // namespace

std::string FirmwareRules::Version_Compactibility(const std::string& version,
                                                  const std::string& machine_type) const {
  return trap_("Version_Compactibility", [&]() -> std::string {
    const std::int16_t type = base::to_int16(machine_type);
    for (const MachineVersions& machine : kMachines) {
      if (machine.machine_type == type) return verdict(machine, version);
    }
    return {};
  });
}

std::string FirmwareRules::Check_Firmware_Version(const std::string& version) const {
  return trap_("Check_Firmware_Version", [&]() -> std::string {
    if (is_unknown(version)) return kNoFirmwareVersion;
    return contains(kOldStatistics, version) ? environment::kOldStats : environment::kNewStats;
  });
}

}  // namespace qvrcom::siterules
