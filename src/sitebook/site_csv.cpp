#include "sitebook/site_csv.h"

#include <algorithm>
#include <map>

#include "base/text.h"
#include "csv/csv_records.h"

namespace qvrcom::sitebook {
namespace {

constexpr std::string_view kKeyHeader = "site-id";

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
  std::vector<std::string> problems;
};

Header read_header(const csv::Record& record) {
  Header header;
  for (const std::string& field : record) {
    const std::string_view name = base::trim(field);
    const auto* found = std::find_if(kSiteColumns.begin(), kSiteColumns.end(), [&](const SiteColumn& column) {
      return base::equals_ignoring_case(column.key, name);
    });
    const SiteColumn* column = found == kSiteColumns.end() ? nullptr : found;
    if (column == nullptr && !base::equals_ignoring_case(name, kKeyHeader))
      header.problems.push_back("There is no column \"" + std::string(name) + "\".");
    if (column != nullptr &&
        std::find(header.columns.begin(), header.columns.end(), column) != header.columns.end())
      header.problems.push_back("The column \"" + std::string(name) + "\" is doubled.");
    header.columns.push_back(column);
  }
  return header;
}

SiteRecord read_site(const csv::Record& record, const Header& header) {
  SiteRecord site;
  for (std::size_t i = 0; i < record.size(); ++i) {
    if (header.columns[i] != nullptr && !record[i].empty()) site.*header.columns[i]->member = record[i];
  }
  return site;
}

// Collects the sites of a file and everything that is wrong with them.
class Import {
 public:
  explicit Import(SiteBook& book) : book_(book) {
    for (const SiteRecord& site : book.list()) {
      if (site.identifier && !site.identifier->empty()) identifiers_.emplace(*site.identifier, 0);
    }
  }

  ImportResult run(std::string_view text) {
    const std::vector<csv::Record> records = csv::parse_csv(text);
    if (records.empty() || is_blank(records[0])) return {0, {{1, "There is no header row."}}};
    const Header header = read_header(records[0]);
    for (const std::string& problem : header.problems)
      result_.problems.push_back({1, problem});
    std::size_t line = 1 + lines_in(records[0]);
    for (std::size_t i = 1; i < records.size() && header.problems.empty(); line += lines_in(records[i++])) {
      if (!is_blank(records[i])) take(records[i], header, line);
    }
    if (!result_.problems.empty()) return result_;
    book_.add_all(sites_);
    result_.added = sites_.size();
    return result_;
  }

 private:
  void take(const csv::Record& record, const Header& header, std::size_t line) {
    if (record.size() > header.columns.size()) {
      result_.problems.push_back({line, "The row has more fields than the header."});
      return;
    }
    const SiteRecord site = read_site(record, header);
    for (const SiteProblem& problem : problems_of(site))
      result_.problems.push_back({line, problem.reason});
    check_identifier(site.identifier.value_or(""), line);
    sites_.push_back(site);
  }

  void check_identifier(const std::string& identifier, std::size_t line) {
    if (identifier.empty()) return;
    const auto [owner, is_new] = identifiers_.emplace(identifier, line);
    if (is_new) return;
    const std::string where =
        owner->second == 0 ? "a site of the book" : "line " + std::to_string(owner->second);
    result_.problems.push_back({line, "Site identifier \"" + identifier + "\" belongs to " + where + "."});
  }

  SiteBook& book_;
  std::map<std::string, std::size_t> identifiers_;  // to the line it stands in, 0 for the book
  std::vector<SiteRecord> sites_;
  ImportResult result_;
};

}  // namespace

std::string export_csv(const std::vector<SiteRecord>& sites) {
  csv::Record header{std::string(kKeyHeader)};
  for (const SiteColumn& column : kSiteColumns)
    header.emplace_back(column.key);
  std::string text = csv::csv_line(header);
  for (const SiteRecord& site : sites) {
    csv::Record record{std::to_string(site.site_id)};
    for (const SiteColumn& column : kSiteColumns)
      record.push_back((site.*column.member).value_or(""));
    text += csv::csv_line(record);
  }
  return text;
}

ImportResult import_csv(SiteBook& book, std::string_view text) {
  return Import(book).run(text);
}

}  // namespace qvrcom::sitebook
