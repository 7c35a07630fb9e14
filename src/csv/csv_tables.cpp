#include "csv/csv_tables.h"

#include <algorithm>
#include <map>
#include <set>

#include "base/text.h"
#include "csv/csv_file.h"
#include "csv/text.h"

namespace qvrcom::csv {
namespace {

constexpr std::uint32_t kPreambleRows = 64;
constexpr std::uint32_t kLookedAtRows = kPreambleRows + 4;  // two may tell the site, one follows the header
constexpr std::size_t kNameBytes = 60;
constexpr std::uint32_t kNameCells = 4;

// Numbers, dates, times of day and the like: a digit, and nothing but what stands between digits.
bool is_figure(std::string_view text) {
  if (to_number(text)) return true;
  return text.find_first_not_of("0123456789 +-.,:/%") == std::string_view::npos &&
         text.find_first_of("0123456789") != std::string_view::npos;
}

bool is_blank(std::string_view text) {
  return text.find_first_not_of(" \t") == std::string_view::npos;
}

// What a row looks like.
struct Shape {
  std::size_t cells = 0;
  std::size_t width = 0;  // cells up to the last that is not empty
  bool texts = true;      // each of these has a text that is no figure
  bool figure = false;    // the first cell is a figure
  bool number = false;    // the second cell is a number

  bool single() const { return width == 1 && cells != 2; }
  bool title() const { return single() && texts; }
};

Shape shape_of(CsvFile& file, std::uint32_t row) {
  const Cells& cells = file.row(row);
  Shape shape{.cells = cells.size(), .width = cells.size()};
  while (shape.width > 0 && is_blank(cells[shape.width - 1]))
    --shape.width;
  for (std::size_t i = 0; i < shape.width && shape.texts; ++i)
    shape.texts = !is_blank(cells[i]) && !is_figure(cells[i]);
  shape.figure = is_figure(cells[0]);
  shape.number = to_number(cells[1]).has_value();
  return shape;
}

// Texts in every cell, and room for the row that follows. One cell alone is a title rather.
bool is_header(CsvFile& file, std::uint32_t row, std::uint32_t end) {
  const Shape shape = shape_of(file, row);
  if (!shape.texts || shape.width == 0) return false;
  if (row + 1 == end) return shape.width > 1;
  return shape_of(file, row + 1).width <= shape.width;
}

// The rows of one or two cells that a block starts with, up to `limit`.
std::uint32_t narrow_rows(CsvFile& file, RowRange rows, std::uint32_t limit) {
  std::uint32_t count = 0;
  while (count < std::min(limit, rows.count()) && shape_of(file, rows.first + count).width <= 2)
    ++count;
  return count;
}

// Whether a first block is about the file: short, two cells at most, no figure in front and no column of
// numbers under a header.
bool is_preamble(CsvFile& file, RowRange rows) {
  if (rows.count() > kPreambleRows || narrow_rows(file, rows, kPreambleRows) < rows.count()) return false;
  while (rows.count() > 1 && shape_of(file, rows.first).title() && !shape_of(file, rows.first + 1).figure)
    ++rows.first;
  bool numbers = rows.count() > 1 && is_header(file, rows.first, rows.end);
  bool figures = false;
  for (std::uint32_t row = rows.first + 1; row < rows.end; ++row) {
    const Shape shape = shape_of(file, row);
    numbers = numbers && shape.number;
    figures = figures || shape.figure;
  }
  return !numbers && !figures;
}

std::string name_part(CsvFile& file, std::uint32_t row, std::uint32_t column) {
  std::string text(base::trim(file.cell(row, column)));
  if (text.size() <= kNameBytes) return text;
  std::size_t length = kNameBytes;
  while ((static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U)
    --length;
  return text.substr(0, length);
}

std::string name_of(CsvFile& file, const Table& table, std::size_t number, std::uint32_t cells) {
  if (!table.title.empty()) return table.title;
  if (!table.header) return "Table " + std::to_string(number + 1);
  std::string name = name_part(file, table.rows.first, 0);
  for (std::uint32_t column = 1; column < cells; ++column)
    name += ", " + name_part(file, table.rows.first, column);
  return name;
}

}  // namespace

void TableFinder::look(CsvFile& file) {
  const CsvIndex& index = file.index();
  const std::size_t known = tables_.size();
  for (; next_block_ < index.block_count(); ++next_block_) {
    const bool whole = next_block_ + 1 < index.block_count() || index.complete();
    if (!whole && index.block(next_block_).rows.count() <= kLookedAtRows) break;
    catch_up(index);
    take_block(file, next_block_);
  }
  catch_up(index);
  if (index.complete()) give_up_title(file);
  if (tables_.size() != known) name_tables(file);
}

void TableFinder::take_block(CsvFile& file, std::uint32_t number) {
  Block block = file.index().block(number);
  RowRange& rows = block.rows;
  if (number == 0) {
    const RowRange site{rows.first, rows.first + site_rows(file)};
    add_lines(file, site, caption_);
    rows.first = site.end;
  }
  if (rows.count() == 0) return;
  const Shape first = shape_of(file, rows.first);
  if (rows.count() == 1 && first.single() && (first.texts || !title_)) {
    give_up_title(file);
    title_ = rows.first;
    if (!first.texts) give_up_title(file);  // a figure names nothing
    return;
  }
  const bool last = number + 1 == file.index().block_count();
  if (tables_.empty() && !last && is_preamble(file, rows)) {
    give_up_title(file);
    return add_lines(file, rows, caption_);
  }
  const Head head = find_head(file, rows);
  if (!goes_on(file, head, rows)) add_table(file, head, block);
  title_.reset();
  last_block_ = number;
}

TableFinder::Head TableFinder::find_head(CsvFile& file, RowRange rows) const {
  const std::uint32_t narrow = narrow_rows(file, rows, kPreambleRows + 1);
  const std::uint32_t wide = rows.first + narrow;
  const bool leads = narrow > 0 && narrow <= kPreambleRows && wide < rows.end;
  const Shape first = shape_of(file, rows.first);
  Head head{.start = rows.first};
  if (leads && (tables_.empty() || is_header(file, wide, rows.end)))
    head.start = wide;
  else if (first.title() && rows.count() > 1 && shape_of(file, rows.first + 1).width > 1)
    ++head.start;
  head.header = is_header(file, head.start, rows.end);
  head.title = title_;
  if (head.start == rows.first) return head;
  // A single cell above the first table's lines is about the file.
  const bool next_to_it = tables_.empty() || shape_of(file, head.start - 1).title();
  const std::uint32_t title = next_to_it ? head.start - 1 : rows.first;
  if (shape_of(file, title).title()) head.title = title;
  return head;
}

// Whether the block is but more of the table in front of it: no title, no header (a row alone may be a total
// without numbers), as wide as that table starts.
bool TableFinder::goes_on(CsvFile& file, const Head& head, RowRange rows) const {
  if (tables_.empty() || head.title || head.start > rows.first) return false;
  if (head.header && rows.count() > 1) return false;
  return shape_of(file, rows.first).width == shape_of(file, tables_.back().rows.first).width;
}

void TableFinder::add_table(CsvFile& file, const Head& head, const Block& block) {
  Table table;
  CaptionLines& lines = tables_.empty() ? caption_ : table.lines;
  if (head.title) table.title = name_part(file, *head.title, 0);
  const std::uint32_t title = head.title.value_or(head.start);
  add_lines(file, {block.rows.first, std::min(title, head.start)}, lines);
  add_lines(file, {std::max(title + 1, block.rows.first), head.start}, lines);
  table.rows = {head.start, block.rows.end};
  table.header = head.header;
  tables_.push_back(std::move(table));
}

void TableFinder::add_lines(CsvFile& file, RowRange rows, CaptionLines& lines) {
  for (std::uint32_t row = rows.first; row < rows.end; ++row) {
    const bool single = shape_of(file, row).single();
    lines.emplace_back(single ? "" : file.cell(row, 0), file.cell(row, single ? 0 : 1));
  }
}

// A title that nothing follows is a remark: of the table in front, or of the file.
void TableFinder::give_up_title(CsvFile& file) {
  if (!title_) return;
  const RowRange row{*title_, *title_ + 1};
  title_.reset();
  if (tables_.empty()) return add_lines(file, row, caption_);
  tables_.back().rows.end = row.end;
}

void TableFinder::catch_up(const CsvIndex& index) {
  if (!last_block_) return;
  const Block block = index.block(*last_block_);
  Table& table = tables_.back();
  table.rows.end = std::max(table.rows.end, block.rows.end);
  table.columns = std::max(table.columns, block.columns);
}

// The header's first cells, as many as it takes to tell the tables apart; else a number.
void TableFinder::name_tables(CsvFile& file) {
  std::vector<std::uint32_t> cells(tables_.size(), 1);
  std::map<std::string, std::size_t> times;
  for (bool longer = true; longer;) {
    times.clear();
    longer = false;
    for (std::size_t i = 0; i < tables_.size(); ++i) {
      tables_[i].name = name_of(file, tables_[i], i, cells[i]);
      ++times[fold_case(tables_[i].name)];
    }
    for (std::size_t i = 0; i < tables_.size(); ++i) {
      const Table& table = tables_[i];
      const auto most = std::min<std::size_t>(shape_of(file, table.rows.first).width, kNameCells);
      const bool grows = times[fold_case(table.name)] > 1 && table.title.empty() && table.header;
      if (!grows || cells[i] >= most) continue;
      ++cells[i];
      longer = true;
    }
  }
  std::set<std::string> taken;
  std::map<std::string, std::size_t> numbers;
  for (Table& table : tables_) {
    const std::string name = table.name;
    std::size_t& number = numbers.try_emplace(fold_case(name), 1).first->second;
    while (!taken.insert(fold_case(table.name)).second)
      table.name = name + " (" + std::to_string(++number) + ")";
  }
}

std::uint32_t site_rows(CsvFile& file) {
  std::uint32_t rows = 0;
  for (const char* name : {"SiteName", "UserSiteID"}) {
    if (rows >= file.index().row_count()) break;
    const Cells& cells = file.row(rows);
    if (cells.size() != 2 || cells[0] != name) break;
    ++rows;
  }
  return rows;
}

}  // namespace qvrcom::csv
