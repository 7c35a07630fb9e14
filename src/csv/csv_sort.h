#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "csv/csv_file.h"
#include "csv/row_order.h"
#include "csv/stepped_sort.h"

namespace qvrcom::csv {

enum class SortDirection { kAscending, kDescending };

// Orders rows by one column, a little at a time: numbers by value, then texts without regard to case (by
// their first 256 bytes), cells that are empty or absent last in both directions; rows that compare equal
// keep the file's order. About 40 bytes a row while it runs.
class SortTask {
 public:
  // The rows are indexed; the file outlives the task.
  SortTask(CsvFile& file, RowRange rows, std::uint32_t column, SortDirection direction);

  // Handles about `rows` rows; answers whether there is more to do. Fault when the file cannot be read.
  bool step(std::uint32_t rows);

  // Once, after the last step.
  RowOrder take_order();

 private:
  struct Number {
    double value;
    std::uint32_t row;
  };
  struct Text {
    std::uint64_t head;  // the first eight bytes, which decide most comparisons
    std::uint64_t place;
    std::uint32_t length;
    std::uint32_t row;
  };
  struct NumberLess {
    bool descending;
    bool operator()(const Number& left, const Number& right) const {
      return descending ? right.value < left.value : left.value < right.value;
    }
  };
  struct TextLess {
    const SortTask* task;
    bool operator()(const Text& left, const Text& right) const;
  };

  void take_keys(std::uint32_t rows);
  void take_key(std::uint32_t row, std::string_view cell);
  std::string_view text_of(const Text& key) const { return {texts_.data() + key.place, key.length}; }

  RowReader reader_;
  RowRange rows_;
  std::uint32_t next_row_;
  std::uint32_t column_;
  bool descending_;
  std::string texts_;
  std::vector<Number> numbers_;
  std::vector<Text> text_keys_;
  std::vector<std::uint32_t> empty_;
  std::optional<SteppedSort<Number, NumberLess>> number_sort_;
  std::optional<SteppedSort<Text, TextLess>> text_sort_;
};

}  // namespace qvrcom::csv
