#include "csv/csv_sort.h"

#include <gmock/gmock.h>

#include "doubles/memory_bytes.h"

namespace qvrcom::csv {
namespace {

using Rows = std::vector<std::uint32_t>;

Rows sorted(const std::string& text, std::uint32_t first, std::uint32_t column, SortDirection direction,
            std::uint32_t step) {
  CsvFile file(std::make_unique<doubles::MemoryBytes>(text));
  file.index().index_all();
  SortTask task(file, {first, file.index().row_count()}, column, direction);
  while (task.step(step)) {
  }
  return task.take_order().sorted;
}

TEST(CsvSort, PutsNumbersBeforeTextsAndEmptyCellsLast) {
  // row 0 is the header; 7 has no second cell at all
  const std::string text = "h,h\n0,pear\n1,10\n2,\n3,9\n4,Apple\n5,9.0\n6,apple\n7\n8,\xC3\x84pfel\n9,1a\n";
  for (const std::uint32_t step : {1U, 3U, 100U}) {
    EXPECT_EQ(sorted(text, 1, 1, SortDirection::kAscending, step), Rows({4, 6, 2, 10, 5, 7, 1, 9, 3, 8}));
    EXPECT_EQ(sorted(text, 1, 1, SortDirection::kDescending, step), Rows({2, 4, 6, 9, 1, 5, 7, 10, 3, 8}));
  }
  EXPECT_EQ(sorted("h\n", 1, 0, SortDirection::kAscending, 1), Rows());
  EXPECT_EQ(sorted("h\n", 5, 0, SortDirection::kAscending, 1), Rows());
}

TEST(CsvSort, AgreesWithAStableSortOnManyRows) {
  constexpr std::uint32_t kRows = 10'007;
  std::string text;
  std::vector<std::string> words;
  for (std::uint32_t i = 0; i < kRows; ++i) {
    words.push_back("common prefix " + std::to_string(i * 7919 % 1000));
    text += words.back() + "\n";
  }
  Rows expected(kRows);
  for (std::uint32_t i = 0; i < kRows; ++i)
    expected[i] = i;
  std::stable_sort(expected.begin(), expected.end(),
                   [&](auto left, auto right) { return words[left] < words[right]; });
  EXPECT_EQ(sorted(text, 0, 0, SortDirection::kAscending, 777), expected);
}

}  // namespace
}  // namespace qvrcom::csv
