// Any bytes as a CSV file: the index in steps and the rows on demand answer as the in-memory parser does;
// caption, sort and find go through them without harm.
#include <cstdint>
#include <cstdlib>
#include <memory>
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

void sort_and_find(CsvFile& file) {
  SortTask sort(file, file.find_caption().rows, 1, SortDirection::kDescending);
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
  while (file.index().index_some(7)) {
  }
  compare_rows(file, parse_csv(text));
  sort_and_find(file);
  return 0;
}
