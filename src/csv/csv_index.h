#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "csv/byte_source.h"
#include "csv/record_scanner.h"

namespace qvrcom::csv {

struct ByteRange {
  std::uint64_t offset = 0;
  std::uint64_t length = 0;
};

// Where every row of a CSV file starts: one linear pass, eight bytes a row, nothing per cell. The pass is
// made in steps, so that whoever shows the file has its first rows at once and never waits for the last.
class CsvIndex {
 public:
  static constexpr std::uint32_t kMaxRows = std::numeric_limits<std::int32_t>::max();

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

  bool unclosed_quote() const { return unclosed_quote_; }  // in the last row
  bool rows_left_out() const { return rows_left_out_; }

 private:
  struct Sink {
    CsvIndex& index;
    std::uint32_t fields = 0;

    void begin_record(std::uint64_t offset) { index.starts_.push_back(offset); }
    void content(std::string_view) {}
    void end_field() { ++fields; }
    void end_record();
  };

  void read_piece(std::size_t length);
  void close();

  ByteSource& source_;
  std::uint32_t max_rows_;
  std::vector<char> buffer_;
  std::vector<std::uint64_t> starts_;
  std::uint64_t position_ = 0;
  std::uint32_t columns_ = 0;
  bool complete_ = false;
  bool unclosed_quote_ = false;
  bool rows_left_out_ = false;
  Sink sink_{*this};
  RecordScanner<Sink> scanner_;
};

}  // namespace qvrcom::csv
