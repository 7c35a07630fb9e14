#include "images/statistics_files.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>

#include "base/fault.h"
#include "base/number.h"
#include "base/text.h"

namespace qvrcom::images {
namespace {

constexpr std::string_view kExtension = ".csv";

// "2": the name is used as it stands. Anything else: the files are numbered.
constexpr std::string_view kNotNumbered = "2";

// What stands between base and extension, as a number, halves rounded to the even one. 0 when it is none or
// does not fit 32 bits.
std::int32_t number_of(std::string_view text) {
  const double value = std::nearbyint(base::parse_number(text).value_or(0));
  using Limits = std::numeric_limits<std::int32_t>;
  return value >= Limits::min() && value <= Limits::max() ? static_cast<std::int32_t>(value) : 0;
}

bool is_numbered(std::string_view name, std::string_view base_name) {
  return name.size() >= base_name.size() + kExtension.size() &&
         base::equals_ignoring_case(name.substr(0, base_name.size()), base_name) &&
         base::equals_ignoring_case(name.substr(name.size() - kExtension.size()), kExtension);
}

}  // namespace

std::string StatisticsFiles::Get_Stats_FileName(const std::string& user_key, environment::DBase& database) {
  return trap_("Get_Stats_FileName", [&] {
    std::string folder, name, flag;
    for (const base::Row row : database.run("Get_File_Handling", {user_key, "Statistics"})) {
      folder = row.text_or("DefaultPathname", {});
      if (folder.empty()) folder = folders_.GetStatsFolder({});
      name = row.text_or("DefaultFilename", "Stats.csv");
      flag = row.text("AutoIncrements");
    }
    return flag == kNotNumbered ? folder + name : Next_AutoIncrement_FileName(folder, name);
  });
}

std::string StatisticsFiles::Next_AutoIncrement_FileName(const std::string& folder,
                                                         const std::string& file_name) {
  return trap_("Next_AutoIncrement_FileName", [&] {
    if (folder.empty())
      throw base::Fault(base::kPathNotFound,
                        "No folder is named for the statistics file: the site has no statistics settings. "
                        "Run \"qvrcomctl setup\".");
    const std::string base_name =
        file_name.substr(0, file_name.size() - std::min(file_name.size(), kExtension.size()));
    std::int32_t largest = 0;
    for (const std::string& name : files_.list(folder)) {
      if (!is_numbered(name, base_name)) continue;
      const std::size_t digits = name.size() - base_name.size() - kExtension.size();
      largest = std::max(largest, number_of(std::string_view(name).substr(base_name.size(), digits)));
    }
    if (largest == std::numeric_limits<std::int32_t>::max()) {
      throw base::Fault(base::kOverflow, "The files in " + files_.native(folder) + " have no next number.");
    }
    return folder + base_name + std::to_string(largest + 1) + std::string(kExtension);
  });
}

}  // namespace qvrcom::images
