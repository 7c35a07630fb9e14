#include "csv/row_reader.h"

#include <algorithm>

namespace qvrcom::csv {
namespace {

constexpr std::uint64_t kReadAhead = 64U << 10U;

}  // namespace

struct Cells::Sink {
  Cells& cells;
  bool ended = false;

  void begin_record(std::uint64_t) {}
  void content(std::string_view piece) {
    if (!ended) cells.text_ += piece;
  }
  void end_field() {
    if (!ended) cells.ends_.push_back(static_cast<std::uint32_t>(cells.text_.size()));
  }
  void end_record() { ended = true; }
};

std::string_view Cells::operator[](std::size_t column) const {
  if (column >= ends_.size()) return {};
  const std::uint32_t start = column == 0 ? 0 : ends_[column - 1];
  return std::string_view(text_).substr(start, ends_[column] - start);
}

void Cells::parse(std::string_view row) {
  text_.clear();
  ends_.clear();
  Sink sink{*this};
  RecordScanner scanner(sink);
  scanner.feed(row);
  scanner.finish();
}

std::string_view RowReader::bytes(std::uint32_t row) {
  const ByteRange range = index_.row(row);
  const std::uint64_t length = std::min(range.length, kRowLimit);
  const std::uint64_t window_end = window_offset_ + window_.size();
  if (range.offset < window_offset_ || range.offset + length > window_end) {
    const bool goes_on = range.offset >= window_offset_ && range.offset <= window_end && !window_.empty();
    window_.resize(static_cast<std::size_t>(goes_on ? std::max(length, kReadAhead) : length));
    window_.resize(source_.read(range.offset, window_));
    window_offset_ = range.offset;
  }
  const auto start = static_cast<std::size_t>(range.offset - window_offset_);
  return std::string_view(window_).substr(start, static_cast<std::size_t>(length));
}

const Cells& RowReader::cells(std::uint32_t row) {
  cells_.parse(bytes(row));
  return cells_;
}

}  // namespace qvrcom::csv
