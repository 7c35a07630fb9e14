// Any bytes as a CSV file: the index in steps and the rows on demand answer as the in-memory parser does;
// tables, sort and find go through them without harm.
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <set>
#include <string>

#include "csv/csv_file.h"
#include "csv/csv_find.h"
#include "csv/csv_records.h"
#include "csv/csv_sort.h"
#include "csv/text.h"
#include "doubles/memory_bytes.h"

namespace {

using namespace qvrcom::csv;

void require(bool holds) {
  if (!holds) std::abort();
}

void compare_rows(CsvFile& file, const std::vector<Record>& records) {
  require(file.index().row_count() == records.size());
  for (std::uint32_t row = 0; row < records.size(); ++row) {
    const Cells& cells = file.row(row);
    require(cells.size() == records[row].size());
    for (std::size_t i = 0; i < cells.size(); ++i)
      require(cells[i] == records[row][i]);
  }
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

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > RowReader::kRowLimit) return 0;
  const std::string text(reinterpret_cast<const char*>(data), size);
  CsvFile file(std::make_unique<qvrcom::doubles::MemoryBytes>(text));
  while (file.index().index_some(7))
    file.find_tables();
  compare_rows(file, parse_csv(text));
  compare_tables(file, text);
  sort_and_find(file);
  return 0;
}
