#pragma once

#include <QString>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "csv/csv_sort.h"
#include "ui/csv_table_model.h"
#include "ui/uc_stats_selection.h"

namespace qvrcom::ui {

// What the user has made of one table.
struct TableView {
  CsvPart part;
  int sort_column = -1;
  csv::SortDirection direction = csv::SortDirection::kAscending;
  csv::RowOrder order;              // sorted by the column, when that was done
  std::optional<ViewPlace> place;   // nothing for a table that was never shown
  std::vector<int> column_widths;   // pixels
  std::optional<QString> searched;  // nothing for a table that was never shown
};

// One view for each table of a file and one for the whole file, as long as a window shows that file.
class TableViews {
 public:
  // The view of a table or of CsvPart::kWholeFile; made when it is first asked for.
  TableView& of(int table, bool header_row = true);
  // What was shown as a whole turns out to be the first of several tables.
  TableView& of_first(bool header_row);
  // Forgets all but whether a whole file has a header row.
  void forget();

  // The tables' names as they are shown; empty for a file of one table, which is shown as a whole.
  const std::vector<std::string>& names() const { return names_; }
  // Takes the names of the tables found by now.
  void take_names(const csv::CsvFile& file);

  // The same table in the file read anew, by its name; nothing when it is not there any more.
  std::optional<int> same_table(int table, const csv::CsvFile& changed) const;
  // Keeps the views of the tables that are still there. Orders have to be made anew.
  void follow(const csv::CsvFile& changed);

 private:
  std::map<int, TableView> views_;
  std::vector<std::string> names_;
};

}  // namespace qvrcom::ui
