#include "images/image_generation.h"

#include <algorithm>
#include <iterator>

#include "base/number.h"

namespace qvrcom::images {
namespace {

// Versions of one machine type, from the first to the last text with two decimals; a version that is not
// written so stands alone. Letter case and leading zeros are part of the text.
struct Versions {
  int machine_type;
  std::string_view first;
  std::string_view last;
  std::string_view generation;
};

constexpr Versions kVersions[] = {
    {2, "5.00", "5.02", "5_0"}, {2, "5.bm", "5.bm", "5_0"},   {2, "5.bn", "5.bn", "5_0"},
    {2, "5.bp", "5.bp", "5_0"}, {2, "05.C0", "05.C0", "5_0"}, {2, "5.ca", "5.ca", "5_0"},
    {2, "5.CB", "5.CB", "5_0"}, {2, "5.CC", "5.CC", "5_0"},   {2, "5.cf", "5.cf", "5_0"},
    {2, "5.cg", "5.cg", "5_0"}, {2, "5.10", "5.19", "5_1"},   {2, "5.20", "5.29", "5_2"},
    {2, "6.00", "6.09", "6_0"}, {2, "6.ac", "6.ac", "6_0"},   {2, "6.10", "6.29", "6_1"},
    {2, "6.30", "6.39", "6_3"}, {2, "6.40", "6.49", "7_0"},   {2, "6.50", "6.69", "7_1"},
    {3, "1.00", "1.09", "7_0"}, {3, "1.10", "1.29", "7_1"},
};

constexpr std::string_view kNewest = "7_2";

constexpr bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

// "D.DD": such texts sort as their numbers do.
bool has_two_decimals(std::string_view text) {
  return text.size() == 4 && is_digit(text[0]) && text[1] == '.' && is_digit(text[2]) && is_digit(text[3]);
}

bool holds(const Versions& versions, std::string_view version) {
  if (version == versions.first) return true;
  return has_two_decimals(version) && versions.first <= version && version <= versions.last;
}

}  // namespace

std::string_view image_generation(std::string_view machine_type, std::string_view firmware_version) {
  const int type = base::to_int16(machine_type);
  if (type != 2 && type != 3) return {};
  const auto* found = std::find_if(std::begin(kVersions), std::end(kVersions), [&](const Versions& versions) {
    return versions.machine_type == type && holds(versions, firmware_version);
  });
  return found == std::end(kVersions) ? kNewest : found->generation;
}

}  // namespace qvrcom::images
