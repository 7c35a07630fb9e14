#include "csv/csv_find.h"

#include <algorithm>

#include "csv/text.h"

namespace qvrcom::csv {

FindTask::FindTask(CsvFile& file, const RowOrder& order, std::string_view text, CellPlace from,
                   FindDirection direction)
    : reader_(file.index(), file.source()),
      order_(order),
      folded_(fold_case(text)),
      ascii_(is_ascii(text)),
      forward_(direction == FindDirection::kForward),
      from_(from),
      line_(from.line) {}

bool FindTask::step(std::uint32_t lines) {
  while (lines-- > 0 && !found_ && visited_ <= order_.count) {
    if (look_at_next_line()) return false;
  }
  return !found_ && visited_ <= order_.count;
}

// The starting line comes first with the cells ahead of the starting one, and last with the others and
// itself.
bool FindTask::look_at_next_line() {
  const std::uint32_t row = order_.file_row(line_);
  if (may_match(reader_.bytes(row))) {
    const Cells& cells = reader_.cells(row);
    const auto size = static_cast<std::uint32_t>(cells.size());
    const bool first = visited_ == 0;
    const bool last = visited_ == order_.count;
    const std::uint32_t behind = std::min(from_.column + 1, size);
    const std::uint32_t before = std::min(from_.column, size);
    std::optional<std::uint32_t> column;
    if (forward_) column = match(cells, first ? behind : 0, last ? behind : size);
    if (!forward_) column = match(cells, last ? before : 0, first ? before : size);
    if (column) found_ = CellPlace{line_, *column};
  }
  ++visited_;
  line_ = forward_ ? (line_ + 1) % order_.count : (line_ + order_.count - 1) % order_.count;
  return found_.has_value();
}

std::optional<std::uint32_t> FindTask::match(const Cells& cells, std::uint32_t from,
                                             std::uint32_t until) const {
  for (std::uint32_t i = from; i < until; ++i) {
    const std::uint32_t column = forward_ ? i : until - 1 - (i - from);
    if (matches(cells[column])) return column;
  }
  return std::nullopt;
}

// Most rows are told apart by their bytes alone. In a row with a quotation mark the bytes of a cell are not
// always those of the file.
bool FindTask::may_match(std::string_view row) const {
  return !ascii_ || row.find('"') != std::string_view::npos || contains_ascii(row, folded_);
}

bool FindTask::matches(std::string_view cell) const {
  if (ascii_) return contains_ascii(cell, folded_);
  return fold_case(to_utf8(cell)).find(folded_) != std::string::npos;
}

}  // namespace qvrcom::csv
