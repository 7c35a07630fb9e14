#include "siterules/firmware_table.h"

#include <algorithm>
#include <functional>
#include <iterator>

#include "base/number.h"
#include "base/text.h"

namespace qvrcom::siterules {
namespace {

constexpr bool kOlder = false;
constexpr bool kCurrent = true;
constexpr bool kOldStats = true;
constexpr bool kNewStats = false;
constexpr bool kRtqa = true;

// 6.70 to 6.79 stand in no row: they cannot be worked with.
constexpr Firmware kFirmware[] = {
    {2, "5.00", "5.01", kOlder, kOldStats, !kRtqa, "5_0"},
    {2, "5.bm", "5.bm", kOlder, kOldStats, !kRtqa, "5_0"},
    {2, "5.bn", "5.bn", kOlder, kOldStats, !kRtqa, "5_0"},
    {2, "5.bp", "5.bp", kOlder, kOldStats, !kRtqa, "5_0"},
    {2, "05.C0", "05.C0", kOlder, kOldStats, !kRtqa, "5_0"},
    {2, "5.ca", "5.ca", kOlder, kOldStats, !kRtqa, "5_0"},
    {2, "5.CB", "5.CB", kOlder, kOldStats, !kRtqa, "5_0"},
    {2, "5.CC", "5.CC", kOlder, kNewStats, !kRtqa, "5_0"},
    {2, "5.cf", "5.cf", kOlder, kNewStats, !kRtqa, "5_0"},
    {2, "5.cg", "5.cg", kOlder, kNewStats, !kRtqa, "5_0"},
    {2, "5.02", "5.02", kOlder, kNewStats, !kRtqa, "5_0"},
    {2, "5.10", "5.19", kOlder, kNewStats, !kRtqa, "5_1"},
    {2, "5.20", "5.29", kOlder, kNewStats, !kRtqa, "5_2"},
    {2, "6.00", "6.09", kOlder, kNewStats, !kRtqa, "6_0"},
    {2, "6.ac", "6.ac", kOlder, kNewStats, !kRtqa, "6_0"},
    {2, "6.10", "6.29", kOlder, kNewStats, kRtqa, "6_1"},
    {2, "6.30", "6.39", kOlder, kNewStats, kRtqa, "6_3"},
    {2, "6.40", "6.49", kOlder, kNewStats, kRtqa, "7_0"},
    {2, "6.50", "6.59", kOlder, kNewStats, kRtqa, "7_1"},
    {2, "6.60", "6.69", kCurrent, kNewStats, kRtqa, "7_1"},
    {2, "6.80", "6.89", kCurrent, kNewStats, !kRtqa, "7_2"},
    {3, "1.00", "1.09", kOlder, kNewStats, kRtqa, "7_0"},
    {3, "1.10", "1.29", kOlder, kNewStats, kRtqa, "7_1"},
    {3, "1.30", "1.39", kCurrent, kNewStats, !kRtqa, "7_2"},
};

constexpr std::string_view kNewest = "7_2";

// "D.DD": such texts sort as their numbers do.
bool has_two_decimals(std::string_view text) {
  return text.size() == 4 && base::is_digit(text[0]) && text[1] == '.' && base::is_digit(text[2]) &&
         base::is_digit(text[3]);
}

bool holds(const Firmware& row, std::string_view version) {
  if (version == row.first) return true;
  return has_two_decimals(version) && row.first <= version && version <= row.last;
}

const Firmware* find(const std::function<bool(const Firmware&)>& wanted) {
  const auto* found = std::find_if(std::begin(kFirmware), std::end(kFirmware), wanted);
  return found == std::end(kFirmware) ? nullptr : found;
}

}  // namespace

const Firmware* firmware_of(int machine_type, std::string_view version) {
  return find([&](const Firmware& row) { return row.machine_type == machine_type && holds(row, version); });
}

const Firmware* firmware_of(std::string_view version) {
  return find([&](const Firmware& row) { return holds(row, version); });
}

std::string_view image_generation(std::string_view machine_type, std::string_view version) {
  const int type = base::to_int16(machine_type);
  if (type != 2 && type != 3) return {};
  const Firmware* firmware = firmware_of(type, version);
  return firmware == nullptr ? kNewest : firmware->generation;
}

}  // namespace qvrcom::siterules
