#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "csv/csv_index.h"
#include "csv/row_reader.h"

namespace qvrcom::csv {

// Leading rows of exactly two cells before a wider row: "SiteName,USA_Office" is no data but says what the
// table is about. Empty lines between them and the table belong to it.
struct Caption {
  std::vector<std::pair<std::string, std::string>> lines;  // UTF-8
  std::uint32_t rows = 0;                                  // how many rows of the file it takes
};

// One opened CSV file: its bytes, the index over them and the rows used last.
class CsvFile {
 public:
  explicit CsvFile(std::unique_ptr<ByteSource> source);

  CsvIndex& index() { return index_; }
  const CsvIndex& index() const { return index_; }
  ByteSource& source() { return *source_; }

  // The cells of a row of the index, from a cache of bounded size. Valid until the next call.
  const Cells& row(std::uint32_t row);
  // One cell as UTF-8; empty where the row is too short.
  std::string cell(std::uint32_t row, std::uint32_t column);

  // Found in the rows that are indexed by then: a caption is at most 64 rows long.
  Caption find_caption();

 private:
  struct Slot {
    std::uint32_t row = CsvIndex::kMaxRows;
    Cells cells;
  };

  std::unique_ptr<ByteSource> source_;
  CsvIndex index_;
  RowReader reader_;
  std::vector<Slot> slots_;
  std::size_t cached_bytes_ = 0;
};

}  // namespace qvrcom::csv
