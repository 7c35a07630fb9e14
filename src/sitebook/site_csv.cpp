#include "sitebook/site_csv.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "base/text.h"
#include "csv/csv_records.h"

namespace qvrcom::sitebook {
namespace {

constexpr std::string_view kKeyHeader = "site-id";
constexpr const char* kNeverClosed =
    "A quotation mark of this row is never closed: the file was cut, or the mark is one too many.";

// How many text lines a record takes: one, and one more for every line end inside its fields.
std::size_t lines_in(const csv::Record& record) {
  std::size_t lines = 1;
  for (const std::string& field : record) {
    lines += static_cast<std::size_t>(std::count(field.begin(), field.end(), '\n'));
  }
  return lines;
}

bool is_blank(const csv::Record& record) {
  return record.size() == 1 && base::trim(record[0]).empty();
}

// The places of a header's columns; null for a column that is passed over.
struct Header {
  std::vector<const SiteColumn*> columns;
  std::optional<std::size_t> key;  // where "site-id" stands
  std::vector<std::string> problems;
};

const SiteColumn* column_called(std::string_view name) {
  const auto* found = std::find_if(kSiteColumns.begin(), kSiteColumns.end(), [&](const SiteColumn& column) {
    return base::equals_ignoring_case(column.key, name);
  });
  return found == kSiteColumns.end() ? nullptr : found;
}

Header read_header(const csv::Record& record) {
  Header header;
  for (const std::string& field : record) {
    const std::string_view name = base::trim(field);
    const SiteColumn* column = column_called(name);
    const bool is_key = base::equals_ignoring_case(name, kKeyHeader);
    if (column == nullptr && !is_key)
      header.problems.push_back("There is no column \"" + std::string(name) + "\".");
    const auto& before = header.columns;
    if (is_key ? header.key.has_value()
               : column != nullptr && std::find(before.begin(), before.end(), column) != before.end())
      header.problems.push_back("The column \"" + std::string(name) + "\" is doubled.");
    if (is_key) header.key = before.size();
    header.columns.push_back(column);
  }
  return header;
}

// An empty field stands for an empty text as well as for a null: it leaves either of them.
void fill(SiteRecord& site, const csv::Record& record, const Header& header) {
  for (std::size_t i = 0; i < record.size(); ++i) {
    if (header.columns[i] == nullptr) continue;
    base::Field& value = site.*header.columns[i]->member;
    if (!record[i].empty()) {
      value = record[i];
    } else if (value != base::Field("")) {
      value.reset();
    }
  }
}

std::string text_of(const base::Field& field) {
  return field.value_or("");
}

// Collects the sites of a file and everything that is wrong with them.
class Import {
 public:
  explicit Import(const std::vector<SiteRecord>& stored) {
    for (const SiteRecord& site : stored) {
      keys_.emplace(std::to_string(site.site_id), &site);
      if (text_of(site.identifier).empty()) continue;
      const auto [owner, is_new] = identifiers_.emplace(*site.identifier, &site);
      if (!is_new) owner->second = nullptr;
    }
  }

  // The sites to write; none when the result has problems.
  std::vector<SiteRecord> run(std::string_view text) {
    const std::vector<csv::Record> records = csv::parse_csv(text);
    if (records.empty() || is_blank(records[0])) {
      result.problems.push_back({1, "There is no header row."});
      return {};
    }
    const Header header = read_header(records[0]);
    for (const std::string& problem : header.problems)
      result.problems.push_back({1, problem});
    const std::size_t whole = records.size() - (csv::ends_in_quotes(text) ? 1 : 0);
    std::size_t line = 1;
    for (std::size_t i = 0; i < whole; line += lines_in(records[i++])) {
      if (i > 0 && header.problems.empty() && !is_blank(records[i])) take(records[i], header, line);
    }
    if (whole < records.size()) result.problems.push_back({line, kNeverClosed});
    if (!result.problems.empty()) return {};
    for (const SiteRecord& site : sites_)
      ++(site.site_id == 0 ? result.added : result.changed);
    return std::move(sites_);
  }

  ImportResult result;

 private:
  void take(const csv::Record& record, const Header& header, std::size_t line) {
    if (record.size() > header.columns.size()) {
      result.problems.push_back({line, "The row has more fields than the header."});
      return;
    }
    SiteRecord site;
    fill(site, record, header);
    if (!check_identifier(text_of(site.identifier), line)) return;
    if (const SiteRecord* stored = stored_site(site, record, header)) {
      site = *stored;
      fill(site, record, header);
      check_place(*stored, line);
      if (site == *stored) return;
    }
    for (const SiteProblem& problem : problems_of(site))
      result.problems.push_back({line, problem.reason});
    sites_.push_back(std::move(site));
  }

  bool check_identifier(const std::string& identifier, std::size_t line) {
    if (identifier.empty()) return true;
    const auto owner = identifiers_.find(identifier);
    const auto [place, is_new] = lines_of_identifiers_.emplace(identifier, line);
    const bool unclear = owner != identifiers_.end() && owner->second == nullptr;
    if (is_new && !unclear) return true;
    result.problems.push_back({line, "Site identifier \"" + identifier + "\" belongs to " +
                                         (is_new ? "more than one site of the book."
                                                 : "line " + std::to_string(place->second) + ".")});
    return false;
  }

  void check_place(const SiteRecord& stored, std::size_t line) {
    const auto [place, is_new] = lines_of_keys_.emplace(stored.site_id, line);
    if (!is_new)
      result.problems.push_back(
          {line, "The row is about the site of line " + std::to_string(place->second) + "."});
  }

  // The site of the book that a row is about; null for a new one.
  const SiteRecord* stored_site(const SiteRecord& row, const csv::Record& record,
                                const Header& header) const {
    if (!text_of(row.identifier).empty()) {
      const auto owner = identifiers_.find(*row.identifier);
      return owner == identifiers_.end() ? nullptr : owner->second;
    }
    if (!header.key || *header.key >= record.size()) return nullptr;
    const auto found = keys_.find(std::string(base::trim(record[*header.key])));
    if (found == keys_.end()) return nullptr;
    SiteRecord filled = *found->second;
    fill(filled, record, header);
    const bool same = text_of(filled.name) == text_of(found->second->name) &&
                      text_of(filled.identifier) == text_of(found->second->identifier);
    return same ? found->second : nullptr;
  }

  std::map<std::string, const SiteRecord*> keys_;
  std::map<std::string, const SiteRecord*> identifiers_;  // null where several sites have one
  std::map<std::string, std::size_t> lines_of_identifiers_;
  std::map<std::int32_t, std::size_t> lines_of_keys_;
  std::vector<SiteRecord> sites_;
};

}  // namespace

std::string export_csv(const std::vector<SiteRecord>& sites, AccessCodes codes) {
  std::vector<SiteColumn> columns(kSiteColumns.begin(), kSiteColumns.end());
  if (codes == AccessCodes::kLeftOut)
    std::erase_if(columns, [](const auto& column) { return column.member == &SiteRecord::access_code; });
  csv::Record record{std::string(kKeyHeader)};
  for (const SiteColumn& column : columns)
    record.emplace_back(column.key);
  std::string text = csv::csv_line(record);
  for (const SiteRecord& site : sites) {
    record = {std::to_string(site.site_id)};
    for (const SiteColumn& column : columns)
      record.push_back(text_of(site.*column.member));
    text += csv::csv_line(record);
  }
  return text;
}

ImportResult import_csv(SiteBook& book, std::string_view text) {
  ImportResult result;
  book.update([&](const std::vector<SiteRecord>& stored) {
    Import import(stored);
    std::vector<SiteRecord> sites = import.run(text);
    result = std::move(import.result);
    return sites;
  });
  return result;
}

ImportResult try_csv(const std::vector<SiteRecord>& stored, std::string_view text) {
  Import import(stored);
  import.run(text);
  return std::move(import.result);
}

}  // namespace qvrcom::sitebook
