#include "csv/csv_file.h"

#include <algorithm>

#include "csv/text.h"

namespace qvrcom::csv {
namespace {

constexpr std::size_t kSlots = 1024;  // rows that are near one another never share a slot
constexpr std::size_t kCacheBytes = 16U << 20U;
constexpr std::uint32_t kCaptionRows = 64;

}  // namespace

CsvFile::CsvFile(std::unique_ptr<ByteSource> source)
    : source_(std::move(source)), index_(*source_), reader_(index_, *source_), slots_(kSlots) {}

const Cells& CsvFile::row(std::uint32_t row) {
  Slot& slot = slots_[row % kSlots];
  if (slot.row == row) return slot.cells;
  const std::string_view bytes = reader_.bytes(row);
  if (cached_bytes_ + bytes.size() > kCacheBytes) {
    slots_.assign(kSlots, {});
    cached_bytes_ = 0;
  }
  slot.row = CsvIndex::kMaxRows;
  cached_bytes_ -= slot.cells.bytes();
  slot.cells.parse(bytes);
  cached_bytes_ += slot.cells.bytes();
  slot.row = row;
  return slot.cells;
}

std::string CsvFile::cell(std::uint32_t row, std::uint32_t column) {
  return to_utf8(this->row(row)[column]);
}

void CsvFile::find_tables() {
  if (!caption_sought_) caption_ = find_caption();
  caption_sought_ = true;
  tables_.look(*this);
}

Caption CsvFile::find_caption() {
  Caption caption;
  const std::uint32_t limit = std::min(index_.row_count(), kCaptionRows + 1);
  for (; caption.rows < limit; ++caption.rows) {
    const Cells& cells = row(caption.rows);
    const bool empty_line = cells.size() == 1 && cells[0].empty() && !caption.lines.empty();
    if (cells.size() == 2) caption.lines.emplace_back(to_utf8(cells[0]), to_utf8(cells[1]));
    if (cells.size() > 2 && !caption.lines.empty()) return caption;
    if (cells.size() != 2 && !empty_line) break;
  }
  caption.rows = site_rows(*this);
  caption.lines.resize(caption.rows);
  return caption;
}

}  // namespace qvrcom::csv
