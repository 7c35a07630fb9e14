#pragma once

#include <cstdint>
#include <vector>

namespace qvrcom::csv {

// Rows of a file from `first` up to `end`, which is not among them.
struct RowRange {
  std::uint32_t first = 0;
  std::uint32_t end = 0;

  std::uint32_t count() const { return end > first ? end - first : 0; }
  bool operator==(const RowRange&) const = default;
};

// Which row of the file stands on which line of a table: the file's own order from `first` on, or a sorted
// one.
struct RowOrder {
  std::uint32_t first = 0;
  std::uint32_t count = 0;
  std::vector<std::uint32_t> sorted = {};  // file rows; empty for the file's own order

  std::uint32_t file_row(std::uint32_t line) const { return sorted.empty() ? first + line : sorted[line]; }
  RowRange rows() const { return {first, first + count}; }
};

}  // namespace qvrcom::csv
