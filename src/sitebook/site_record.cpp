#include "sitebook/site_record.h"

#include <algorithm>

#include "base/text.h"
#include "environment/device_address.h"

namespace qvrcom::sitebook {
namespace {

bool is_small_number(std::string_view text) {
  return text.size() <= 4 &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// Why `text` cannot stand in a column of this kind, as the end of a sentence; "" when it can.
std::string refusal(SiteText kind, const std::string& text) {
  if (base::has_control_character(text)) return "holds a control character";
  if (!base::is_utf8(text)) return "holds bytes that are no text";
  if (kind == SiteText::kAny || text.empty()) return {};
  if (kind == SiteText::kNumber) return is_small_number(text) ? "" : "is no number between 0 and 9999";
  // A ";" ends a field of the job index and of a script, a "^" a part of one.
  if (text.find_first_of(";^") != std::string::npos) return "holds \";\" or \"^\"";
  return kind == SiteText::kAddress ? environment::device_address_problem(text) : std::string{};
}

}  // namespace

std::string title_of(const SiteRecord& site) {
  return site.name.value_or("") + " - " + site.identifier.value_or("");
}

std::vector<SiteProblem> problems_of(const SiteRecord& site) {
  std::vector<SiteProblem> problems;
  for (const SiteColumn& column : kSiteColumns) {
    const std::string reason = refusal(column.text, (site.*column.member).value_or(""));
    if (reason.empty()) continue;
    problems.push_back({column.key, std::string(column.label) + " " + reason + "."});
  }
  return problems;
}

std::string reasons_of(const std::vector<SiteProblem>& problems) {
  std::string text;
  for (const SiteProblem& problem : problems)
    text += (text.empty() ? "" : " ") + problem.reason;
  return text;
}

}  // namespace qvrcom::sitebook
