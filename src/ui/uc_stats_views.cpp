#include "ui/uc_stats_views.h"

#include <algorithm>
#include <utility>

namespace qvrcom::ui {
namespace {

std::vector<std::string> names_of(const csv::CsvFile& file) {
  std::vector<std::string> names;
  if (file.tables().size() < 2) return names;
  for (const csv::Table& table : file.tables())
    names.push_back(table.name);
  return names;
}

}  // namespace

TableView& TableViews::of(int table, bool header_row) {
  const auto [place, made] = views_.try_emplace(table);
  if (made) place->second.part = {table, header_row};
  return place->second;
}

TableView& TableViews::of_first(bool header_row) {
  TableView& whole = of(CsvPart::kWholeFile);
  TableView first = std::exchange(whole, {});
  whole.part = std::exchange(first.part, {0, header_row});
  return views_.insert_or_assign(0, std::move(first)).first->second;
}

void TableViews::forget() {
  const CsvPart whole = of(CsvPart::kWholeFile).part;
  views_.clear();
  names_.clear();
  of(CsvPart::kWholeFile, whole.header_row);
}

void TableViews::take_names(const csv::CsvFile& file) {
  names_ = names_of(file);
}

// A table alone is shown as a whole file; when others join it, it is the first of them.
std::optional<int> TableViews::same_table(int table, const csv::CsvFile& changed) const {
  const std::vector<std::string> names = names_of(changed);
  if (names.empty()) return table <= 0 ? std::optional(CsvPart::kWholeFile) : std::nullopt;
  if (names_.empty()) return 0;
  if (table == CsvPart::kWholeFile) return table;
  const auto found = std::find(names.begin(), names.end(), names_[static_cast<std::size_t>(table)]);
  if (found == names.end()) return std::nullopt;
  return static_cast<int>(found - names.begin());
}

void TableViews::follow(const csv::CsvFile& changed) {
  std::map<int, TableView> followed;
  for (auto& [table, view] : views_) {
    const std::optional<int> same = same_table(table, changed);
    if (!same) continue;
    view.part.table = *same;
    view.order = {};
    followed.insert_or_assign(*same, std::move(view));
  }
  views_ = std::move(followed);
  names_ = names_of(changed);
}

}  // namespace qvrcom::ui
