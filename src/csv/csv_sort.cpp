#include "csv/csv_sort.h"

#include <algorithm>

#include "base/text.h"
#include "csv/text.h"

namespace qvrcom::csv {
namespace {

constexpr std::size_t kComparedBytes = 256;

std::uint64_t head_of(std::string_view text) {
  std::uint64_t head = 0;
  for (std::size_t i = 0; i < 8; ++i)
    head = (head << 8U) | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
  return head;
}

}  // namespace

SortTask::SortTask(CsvFile& file, RowRange rows, std::uint32_t column, SortDirection direction)
    : reader_(file.index(), file.source()),
      rows_(rows),
      next_row_(rows.first),
      column_(column),
      descending_(direction == SortDirection::kDescending) {}

bool SortTask::TextLess::operator()(const Text& left, const Text& right) const {
  const Text& low = task->descending_ ? right : left;
  const Text& high = task->descending_ ? left : right;
  if (low.head != high.head) return low.head < high.head;
  return task->text_of(low) < task->text_of(high);
}

bool SortTask::step(std::uint32_t rows) {
  if (!number_sort_) {
    take_keys(rows);
    return true;
  }
  return number_sort_->step(rows) || text_sort_->step(rows);
}

void SortTask::take_keys(std::uint32_t rows) {
  const std::uint32_t stop = next_row_ + std::min(rows, rows_.end - std::min(rows_.end, next_row_));
  for (; next_row_ < stop; ++next_row_)
    take_key(next_row_, reader_.cells(next_row_)[column_]);
  if (next_row_ < rows_.end) return;
  number_sort_.emplace(std::move(numbers_), NumberLess{descending_});
  text_sort_.emplace(std::move(text_keys_), TextLess{this});
}

void SortTask::take_key(std::uint32_t row, std::string_view cell) {
  if (base::trim(cell).empty()) {
    empty_.push_back(row);
  } else if (const std::optional<double> number = to_number(cell)) {
    numbers_.push_back({*number, row});
  } else {
    const std::string folded = fold_case(to_utf8(cell)).substr(0, kComparedBytes);
    text_keys_.push_back({head_of(folded), texts_.size(), static_cast<std::uint32_t>(folded.size()), row});
    texts_ += folded;
  }
}

RowOrder SortTask::take_order() {
  RowOrder order{rows_.first, rows_.count()};
  order.sorted.reserve(order.count);
  for (const Number& key : number_sort_->keys())
    order.sorted.push_back(key.row);
  for (const Text& key : text_sort_->keys())
    order.sorted.push_back(key.row);
  order.sorted.insert(order.sorted.end(), empty_.begin(), empty_.end());
  return order;
}

}  // namespace qvrcom::csv
