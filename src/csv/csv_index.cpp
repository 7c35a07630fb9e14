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

std::string text_of(const DamagedRow& damaged) {
  std::string text = "Line " + std::to_string(damaged.line) + ":";
  if (damaged.joined) text += " a quotation mark too many joins this line and the next ones into one row.";
  if (damaged.unclosed) text += " a quotation mark is never closed, so the rest of the file is one row.";
  if (damaged.too_long) text += " the row is longer than 1 MiB; what lies beyond is not shown.";
  return text;
}

}  // namespace

CsvIndex::CsvIndex(ByteSource& source, std::uint32_t max_rows)
    : source_(source),
      max_rows_(max_rows),
      buffer_(kPiece),
      position_(first_row_offset(source)),
      scanner_(sink_, position_) {}

void CsvIndex::Sink::begin_record(std::uint64_t offset) {
  index.check_length(offset);
  index.starts_.push_back(offset);
  breaks_in_front = line_breaks;
}

// Line ends in here count for where later rows begin.
void CsvIndex::Sink::quoted_content(std::string_view piece) {
  content(piece);
  if (piece.find('\n') == std::string_view::npos && piece.find('\r') == std::string_view::npos) {
    after_cr = false;
    return;
  }
  for (const char c : piece) {
    line_breaks += c == '\r' || (c == '\n' && !after_cr) ? 1U : 0U;
    after_cr = c == '\r';
  }
}

void CsvIndex::Sink::end_record() {
  index.columns_ = std::max(index.columns_, fields);
  index.take_up_row(filled);
  if (joined) index.note(&DamagedRow::joined);
  fields = filled = 0;
  joined = false;
}

void CsvIndex::take_up_row(std::uint32_t filled) {
  const auto row = static_cast<std::uint32_t>(starts_.size() - 1);
  const bool opens = filled != 0 && !in_block_;
  const bool ends = filled == 0 && in_block_;
  if (opens) blocks_.push_back({{row, 0}, 0});
  if (ends && blocks_.size() == kMaxBlocks) blocks_left_out_ = true;
  if (ends) blocks_.back().rows.end = row;
  in_block_ = filled != 0 || (in_block_ && blocks_left_out_);
  if (in_block_) blocks_.back().columns = std::max(blocks_.back().columns, filled);
}

// Of the row that ends at `end`.
void CsvIndex::check_length(std::uint64_t end) {
  if (!starts_.empty() && end - starts_.back() > kRowLimit) note(&DamagedRow::too_long);
}

void CsvIndex::note(bool DamagedRow::*damage) {
  const auto row = static_cast<std::uint32_t>(starts_.size() - 1);
  if (row >= max_rows_) return;
  if (row != last_damaged_row_) {
    last_damaged_row_ = row;
    if (++damaged_row_count_ <= kKeptDamagedRows)
      damaged_rows_.push_back({.row = row, .line = row + 1ULL + sink_.breaks_in_front});
  }
  if (damaged_rows_.back().row == row) damaged_rows_.back().*damage = true;
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
  const bool unclosed = scanner_.finish();
  if (unclosed) note(&DamagedRow::unclosed);
  if (!rows_left_out_) check_length(position_);
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

std::uint32_t CsvIndex::block_count() const {
  std::size_t count = blocks_.size();
  while (count > 0 && blocks_[count - 1].rows.first >= row_count())
    --count;
  return static_cast<std::uint32_t>(count);
}

Block CsvIndex::block(std::uint32_t number) const {
  Block block = blocks_[number];
  const bool open = number + 1 == blocks_.size() && in_block_;
  block.rows.end = open ? row_count() : std::min(block.rows.end, row_count());
  return block;
}

std::vector<std::string> damage_texts(const CsvIndex& index, std::size_t limit) {
  std::vector<std::string> texts;
  for (const DamagedRow& damaged : index.damaged_rows())
    if (texts.size() < limit) texts.push_back(text_of(damaged));
  const std::uint64_t others = index.damaged_row_count() - texts.size();
  if (others != 0) texts.push_back("Further rows with such damage: " + std::to_string(others) + ".");
  return texts;
}

}  // namespace qvrcom::csv
