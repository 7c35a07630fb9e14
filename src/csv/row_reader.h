#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "csv/csv_index.h"

namespace qvrcom::csv {

// The cells of one row, as the file's bytes without their quotation marks: one text and the places where
// cells end in it.
class Cells {
 public:
  std::size_t size() const { return ends_.size(); }
  std::size_t bytes() const { return text_.size(); }
  // Empty for a cell that a short row does not have.
  std::string_view operator[](std::size_t column) const;

  // Takes the first record of `row`.
  void parse(std::string_view row);

 private:
  struct Sink;
  std::string text_;
  std::vector<std::uint32_t> ends_;
};

// Reads rows in any order; rows asked for one after the other cost one read per 64 KiB.
class RowReader {
 public:
  static constexpr std::uint64_t kRowLimit = CsvIndex::kRowLimit;

  RowReader(const CsvIndex& index, ByteSource& source) : index_(index), source_(source) {}

  // Valid until the next call.
  std::string_view bytes(std::uint32_t row);
  const Cells& cells(std::uint32_t row);

 private:
  const CsvIndex& index_;
  ByteSource& source_;
  std::string window_;
  std::uint64_t window_offset_ = 0;
  Cells cells_;
};

}  // namespace qvrcom::csv
