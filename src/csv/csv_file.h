#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "csv/csv_index.h"
#include "csv/csv_tables.h"
#include "csv/row_reader.h"

namespace qvrcom::csv {

// Leading rows of exactly two cells before a wider row: "SiteName,USA_Office" is no data but says what the
// table is about. Empty lines between them and the table belong to it. The rows that tell the site count
// whatever follows.
struct Caption {
  CaptionLines lines;
  std::uint32_t rows = 0;  // how many rows of the file it takes
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

  // Looks for tables in what was indexed since the last time, and for the caption in what is indexed the
  // first time. Fault when that cannot be read.
  void find_tables();
  const Caption& caption() const { return caption_; }
  const std::vector<Table>& tables() const { return tables_.tables(); }
  // What stands in front of the first of several tables.
  const CaptionLines& caption_of_tables() const { return tables_.caption(); }

 private:
  Caption find_caption();

  struct Slot {
    std::uint32_t row = CsvIndex::kMaxRows;
    Cells cells;
  };

  std::unique_ptr<ByteSource> source_;
  CsvIndex index_;
  RowReader reader_;
  TableFinder tables_;
  Caption caption_;
  bool caption_sought_ = false;
  std::vector<Slot> slots_;
  std::size_t cached_bytes_ = 0;
};

}  // namespace qvrcom::csv
