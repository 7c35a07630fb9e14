#include "csv/csv_index.h"

#include <algorithm>
#include <limits>

namespace qvrcom::csv {
namespace {

constexpr std::size_t kPiece = 256U << 10U;

// A byte order mark is no content: the first row starts behind it.
std::uint64_t first_row_offset(ByteSource& source) {
  char head[kByteOrderMark.size()];
  const std::size_t length = source.read(0, head);
  return std::string_view(head, length) == kByteOrderMark ? length : 0;
}

}  // namespace

CsvIndex::CsvIndex(ByteSource& source, std::uint32_t max_rows)
    : source_(source),
      max_rows_(max_rows),
      buffer_(kPiece),
      position_(first_row_offset(source)),
      scanner_(sink_, position_) {}

void CsvIndex::Sink::end_record() {
  index.columns_ = std::max(index.columns_, fields);
  fields = 0;
}

bool CsvIndex::index_some(std::uint64_t max_bytes) {
  const std::uint64_t goal =
      position_ + std::min(max_bytes, total_bytes() - std::min(position_, total_bytes()));
  while (!complete_ && position_ < goal)
    read_piece(static_cast<std::size_t>(std::min<std::uint64_t>(kPiece, goal - position_)));
  if (!complete_ && position_ >= total_bytes()) close();
  return !complete_;
}

void CsvIndex::index_all() {
  while (index_some(std::numeric_limits<std::uint64_t>::max())) {
  }
}

void CsvIndex::read_piece(std::size_t length) {
  const std::size_t got = source_.read(position_, {buffer_.data(), length});
  scanner_.feed({buffer_.data(), got});
  position_ += got;
  rows_left_out_ = starts_.size() > max_rows_;
  // A file that was cut short meanwhile ends where its bytes end.
  if (got < length || rows_left_out_) close();
}

void CsvIndex::close() {
  unclosed_quote_ = scanner_.finish();
  complete_ = true;
  starts_.resize(std::min<std::size_t>(starts_.size(), std::size_t{max_rows_} + 1));
  starts_.shrink_to_fit();
  buffer_ = {};
}

std::uint32_t CsvIndex::row_count() const {
  // The start of the row that follows tells where a row ends.
  const bool last_is_open = !complete_ || rows_left_out_;
  return static_cast<std::uint32_t>(starts_.size() - (last_is_open && !starts_.empty() ? 1 : 0));
}

ByteRange CsvIndex::row(std::uint32_t row) const {
  const std::uint64_t end = row + 1ULL < starts_.size() ? starts_[row + 1ULL] : position_;
  return {starts_[row], end - starts_[row]};
}

}  // namespace qvrcom::csv
