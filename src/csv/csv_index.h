#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "csv/byte_source.h"
#include "csv/record_scanner.h"
#include "csv/row_order.h"

namespace qvrcom::csv {

struct ByteRange {
  std::uint64_t offset = 0;
  std::uint64_t length = 0;
};

// Rows with no empty line between them. A line of separators alone is empty, too.
struct Block {
  RowRange rows;
  std::uint32_t columns = 0;  // of its widest row, up to the last cell that is not empty
};

// A row that cannot be shown as its writer meant it.
struct DamagedRow {
  std::uint32_t row = 0;
  std::uint64_t line = 0;  // of the file, from 1: where the row begins
  bool joined = false;     // a quotation mark too many made one row of several lines
  bool unclosed = false;   // a quotation mark is never closed: the rest of the file is this row
  bool too_long = false;   // longer than CsvIndex::kRowLimit

  bool operator==(const DamagedRow&) const = default;
};

// Where every row of a CSV file starts: one linear pass, eight bytes a row, nothing per cell. The pass is
// made in steps, so that whoever shows the file has its first rows at once and never waits for the last.
class CsvIndex {
 public:
  static constexpr std::uint32_t kMaxRows = std::numeric_limits<std::int32_t>::max();
  // What a row has beyond this many bytes is not shown. Only a damaged file has such a row.
  static constexpr std::uint64_t kRowLimit = 1U << 20U;
  static constexpr std::uint32_t kMaxBlocks = 1024;
  static constexpr std::uint32_t kKeptDamagedRows = 20;

  // Rows beyond `max_rows` are left out. The source outlives the index.
  explicit CsvIndex(ByteSource& source, std::uint32_t max_rows = kMaxRows);
  CsvIndex(const CsvIndex&) = delete;
  CsvIndex& operator=(const CsvIndex&) = delete;

  // Reads about `max_bytes` more; answers whether there is more to do. Fault when the source fails.
  bool index_some(std::uint64_t max_bytes);
  void index_all();

  bool complete() const { return complete_; }
  std::uint64_t indexed_bytes() const { return position_; }
  std::uint64_t total_bytes() const { return source_.size(); }

  // Rows whose end is known.
  std::uint32_t row_count() const;
  // Cells of the widest row met.
  std::uint32_t column_count() const { return columns_; }
  // The row's bytes with its line end.
  ByteRange row(std::uint32_t row) const;

  // Blocks whose first row is counted; the last one ends with the rows there are. Of a file with more than
  // kMaxBlocks the last one holds all that follows.
  std::uint32_t block_count() const;
  Block block(std::uint32_t number) const;
  bool blocks_left_out() const { return blocks_left_out_; }

  // The first of them, and how many there are.
  const std::vector<DamagedRow>& damaged_rows() const { return damaged_rows_; }
  std::uint64_t damaged_row_count() const { return damaged_row_count_; }

  bool rows_left_out() const { return rows_left_out_; }

 private:
  struct Sink {
    CsvIndex& index;
    std::uint32_t fields = 0;
    std::uint32_t filled = 0;           // fields up to the last one that is not empty
    std::uint64_t line_breaks = 0;      // in quotation marks, so far
    std::uint64_t breaks_in_front = 0;  // of the current record
    bool after_cr = false;
    bool joined = false;

    void begin_record(std::uint64_t offset);
    void content(std::string_view) { filled = fields + 1; }
    void quoted_content(std::string_view piece);
    void text_behind_quote() { joined = joined || line_breaks != breaks_in_front; }
    void end_field() { ++fields; }
    void end_record();
  };

  void read_piece(std::size_t length);
  void close();
  void take_up_row(std::uint32_t filled);
  void check_length(std::uint64_t end);
  void note(bool DamagedRow::*damage);

  ByteSource& source_;
  std::uint32_t max_rows_;
  std::vector<char> buffer_;
  std::vector<std::uint64_t> starts_;
  std::uint64_t position_ = 0;
  std::vector<Block> blocks_;
  std::vector<DamagedRow> damaged_rows_;
  std::uint64_t damaged_row_count_ = 0;
  std::uint32_t last_damaged_row_ = kMaxRows;
  std::uint32_t columns_ = 0;
  bool in_block_ = false;
  bool blocks_left_out_ = false;
  bool complete_ = false;
  bool rows_left_out_ = false;
  Sink sink_{*this};
  RecordScanner<Sink> scanner_;
};

// What is wrong with the rows of a file, one entry a row: where it begins and what is wrong, in whole
// sentences. Of more than `limit` rows the last entry counts the others.
std::vector<std::string> damage_texts(const CsvIndex& index, std::size_t limit = CsvIndex::kKeptDamagedRows);

}  // namespace qvrcom::csv
