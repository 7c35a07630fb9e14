#include "protocol/job_name.h"

#include "base/text.h"

#include <algorithm>

namespace qvrcom::protocol {
namespace {

constexpr std::size_t kNameLimit = 64;

bool is_name_character(char c) {
  return base::is_letter_or_digit(c) || c == '-' || c == '_';
}

}  // namespace

std::string job_name(base::LocalTime moment, std::string_view suffix) {
  return base::job_name_stamp(moment) + std::string(suffix);
}

std::string job_file(const std::string& folder, std::string_view extension) {
  return folder + "\\" + folder.substr(folder.rfind('\\') + 1) + std::string(extension);
}

bool is_job_name(std::string_view name) {
  return !name.empty() && name.size() <= kNameLimit &&
         std::all_of(name.begin(), name.end(), is_name_character);
}

std::string_view job_of_script(std::string_view script_path) {
  if (!script_path.ends_with(kScriptExtension)) return {};
  script_path.remove_suffix(kScriptExtension.size());
  const auto end = script_path.rfind('\\');
  if (end == std::string_view::npos) return {};
  const std::string_view name = script_path.substr(end + 1);
  std::string_view folder = script_path.substr(0, end);
  folder.remove_prefix(std::min(folder.size(), folder.rfind('\\') + 1));  // npos + 1 is 0
  return folder == name && is_job_name(name) ? name : std::string_view{};
}

}  // namespace qvrcom::protocol
