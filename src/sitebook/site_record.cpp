#include "sitebook/site_record.h"

#include <algorithm>

#include "base/number.h"
#include "base/text.h"
#include "protocol/device_address.h"
#include "protocol/script_grammar.h"

namespace qvrcom::sitebook {
namespace {

static_assert(protocol::kScriptLineLimit >= protocol::kIndexLineLimit);

bool is_small_number(std::string_view text) {
  return text.size() <= 4 && std::all_of(text.begin(), text.end(), base::is_digit);
}

bool stands_in_index(SiteText kind) {
  return kind == SiteText::kIndexed || kind == SiteText::kAddress;
}

const std::string kTooLong = "longer than " + std::to_string(kSiteTextLimit) + " bytes";

// Why `text` would break the line of a job that it stands in, as the end of a sentence; "" when it would not.
// A ";" ends a field of the job index and of a script, a "^" a part of one.
std::string break_of_line(SiteText kind, const std::string& text) {
  if (base::has_control_character(text)) return "holds a control character";
  if (stands_in_index(kind) && text.find_first_of(";^") != std::string::npos) return "holds \";\" or \"^\"";
  return text.size() > kSiteTextLimit ? "is " + kTooLong : std::string{};
}

// Why `text` cannot stand in a column of this kind of the book.
std::string refusal(SiteText kind, const std::string& text) {
  if (const std::string broken = break_of_line(kind, text); !broken.empty()) return broken;
  if (!base::is_utf8(text)) return "holds bytes that are no text";
  if (kind == SiteText::kAny || text.empty()) return {};
  if (kind == SiteText::kNumber) return is_small_number(text) ? "" : "is no number between 0 and 9999";
  return kind == SiteText::kAddress ? protocol::device_address_problem(text) : std::string{};
}

std::vector<SiteProblem> problems_by(std::string (*judge)(SiteText, const std::string&),
                                     const SiteRecord& site) {
  std::vector<SiteProblem> problems;
  for (const SiteColumn& column : kSiteColumns) {
    const std::string reason = judge(column.text, (site.*column.member).value_or(""));
    if (reason.empty()) continue;
    problems.push_back({column.key, std::string(column.label) + " " + reason + "."});
  }
  return problems;
}

// Two columns that stand in one line of a job.
struct SharedLine {
  std::string_view key;  // of the first
  base::Field SiteRecord::*first;
  base::Field SiteRecord::*second;
  const char* labels;
};

constexpr SharedLine kSharedLines[] = {
    {"name", &SiteRecord::name, &SiteRecord::identifier, "Site name and site identifier"},
    {"dialup", &SiteRecord::dialup, &SiteRecord::number, "Dial-up connection and number to dial"},
};

// Each fits, both do not.
void judge_shared_lines(const SiteRecord& site, std::vector<SiteProblem>& problems) {
  for (const SharedLine& line : kSharedLines) {
    const std::size_t first = (site.*line.first).value_or("").size();
    const std::size_t second = (site.*line.second).value_or("").size();
    if (std::max(first, second) <= kSiteTextLimit && first + second > kSiteTextLimit)
      problems.push_back({line.key, std::string(line.labels) + " together are " + kTooLong + "."});
  }
}

bool is_blank(const base::Field& field) {
  return base::trim(field.value_or("")).empty();
}

}  // namespace

SiteRecord site_of(const base::Row& row) {
  SiteRecord site;
  site.site_id = base::to_int32(row.text("SiteID"));
  for (const SiteColumn& column : kSiteColumns)
    site.*column.member = row[column.column];
  return site;
}

std::string session_text(const SiteRecord& site, base::Field SiteRecord::*member) {
  const auto column = std::find_if(kSiteColumns.begin(), kSiteColumns.end(),
                                   [&](const SiteColumn& each) { return each.member == member; });
  const base::Field& value = site.*member;
  const SessionDefault& missing = column->when_missing;
  return !value || (missing.also_when_empty && value->empty()) ? missing.text : *value;
}

SiteRecord with_defaults(SiteRecord site) {
  for (const SiteColumn& column : kSiteColumns)
    site.*column.member = session_text(site, column.member);
  return site;
}

base::SiteConnection connection_of(const SiteRecord& site) {
  base::SiteConnection connection;
  for (const SiteColumn& column : kSiteColumns) {
    if (column.taken_as) connection[*column.taken_as] = session_text(site, column.member);
  }
  connection[base::SiteConnection::kSiteId] = std::to_string(site.site_id);
  return connection;
}

std::string title_of(const std::string& name, const std::string& identifier) {
  if (base::trim(name).empty()) return identifier;
  return base::trim(identifier).empty() ? name : name + " - " + identifier;
}

std::string title_of(const SiteRecord& site) {
  return title_of(site.name.value_or(""), site.identifier.value_or(""));
}

std::string list_text_of(const SiteRecord& site) {
  return site.name.value_or("") + " - " + site.identifier.value_or("");
}

bool have_same_title(const SiteRecord& one, const SiteRecord& other) {
  return one.name.value_or("") == other.name.value_or("") &&
         one.identifier.value_or("") == other.identifier.value_or("");
}

std::vector<SiteProblem> problems_of(const SiteRecord& site) {
  std::vector<SiteProblem> problems = problems_by(refusal, site);
  judge_shared_lines(site, problems);
  if (is_blank(site.name) && is_blank(site.identifier))
    problems.push_back({"name", "A site needs a name or an identifier."});
  return problems;
}

std::vector<SiteProblem> session_problems_of(const SiteRecord& site) {
  std::vector<SiteProblem> problems = problems_by(break_of_line, site);
  judge_shared_lines(site, problems);
  return problems;
}

std::string reasons_of(const std::vector<SiteProblem>& problems) {
  std::string text;
  for (const SiteProblem& problem : problems)
    text += (text.empty() ? "" : " ") + problem.reason;
  return text;
}

}  // namespace qvrcom::sitebook
