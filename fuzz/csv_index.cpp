// Any bytes as a CSV file: the index in steps and the rows on demand answer as the in-memory parser does;
// tables, sort and find go through them without harm.
#include <algorithm>
#include <memory>
#include <set>

#include "csv/csv_file.h"
#include "csv/csv_find.h"
#include "csv/csv_records.h"
#include "csv/csv_sort.h"
#include "csv/text.h"
#include "doubles/memory_bytes.h"
#include "entry.h"

namespace {

using namespace qvrcom::csv;

void compare_rows(CsvFile& file, const std::vector<Record>& records) {
  require(file.index().row_count() == records.size());
  std::size_t widest = 0;
  for (std::uint32_t row = 0; row < records.size(); ++row) {
    const Cells& cells = file.row(row);
    require(cells.size() == records[row].size());
    widest = std::max(widest, cells.size());
    for (std::size_t i = 0; i < cells.size(); ++i)
      require(cells[i] == records[row][i]);
  }
  require(file.index().column_count() == widest);
}

// Found in steps as at once, one after the other, each with rows and a name of its own.
void compare_tables(CsvFile& file, const std::string& text) {
  file.find_tables();
  CsvFile at_once(std::make_unique<qvrcom::doubles::MemoryBytes>(text));
  at_once.index().index_all();
  at_once.find_tables();
  require(file.tables().size() == at_once.tables().size());
  require(file.caption_of_tables() == at_once.caption_of_tables());
  std::set<std::string> names;
  std::uint32_t end = 0;
  for (std::size_t i = 0; i < file.tables().size(); ++i) {
    const Table& table = file.tables()[i];
    require(table.rows == at_once.tables()[i].rows && table.name == at_once.tables()[i].name);
    require(table.rows.first >= end && table.rows.first < table.rows.end);
    require(names.insert(fold_case(table.name)).second);
    end = table.rows.end;
  }
  require(end <= file.index().row_count());
}

void sort_and_find(CsvFile& file) {
  SortTask sort(file, {file.caption().rows, file.index().row_count()}, 1, SortDirection::kDescending);
  while (sort.step(3)) {
  }
  const RowOrder order = sort.take_order();
  if (order.count == 0) return;
  require(order.sorted.size() == order.count);
  FindTask find(file, order, to_utf8(file.row(0)[0]).substr(0, 3) + "e", {0, 0}, FindDirection::kBackward);
  while (find.step(3)) {
  }
}

}  // namespace

void fuzz(std::string_view bytes) {
  if (bytes.size() > RowReader::kRowLimit) return;
  const std::string text(bytes);
  CsvFile file(std::make_unique<qvrcom::doubles::MemoryBytes>(text));
  while (file.index().index_some(7))
    file.find_tables();
  compare_rows(file, parse_csv(text));
  compare_tables(file, text);
  sort_and_find(file);
}
