#include "ui/csv_table_model.h"

#include <algorithm>
#include <unordered_map>

#include "csv/text.h"
#include "ui/attempt.h"
#include "ui/widget_text.h"

namespace qvrcom::ui {
namespace {

constexpr qsizetype kShownCharacters = 500;
constexpr qsizetype kToolTipCharacters = 4000;
constexpr qsizetype kWideCell = 40;
constexpr char16_t kLineBreakSign = 0x21B5;
constexpr char16_t kControlPictures = 0x2400;

// One line without control characters, which would otherwise take no room and not be seen.
QString shown(QString text) {
  const bool cut = text.size() > kShownCharacters;
  if (cut) text.truncate(kShownCharacters);
  text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  for (QChar& character : text) {
    if (character == u'\n' || character == u'\r') character = QChar(kLineBreakSign);
    if (character == u'\t') character = u' ';
    if (character < u' ') character = QChar(static_cast<char16_t>(kControlPictures + character.unicode()));
  }
  return cut ? text + QChar(0x2026) : text;
}

QVariant tool_tip(const QString& text) {
  if (text.size() <= kWideCell && !text.contains(u'\n') && !text.contains(u'\r')) return {};
  return QStringLiteral("<p style='white-space:pre-wrap'>%1</p>")
      .arg(text.left(kToolTipCharacters).toHtmlEscaped());
}

}  // namespace

csv::RowRange CsvPart::data_rows(const csv::CsvFile& file) const {
  const std::uint32_t header = header_row ? 1 : 0;
  if (table != kWholeFile) {
    const csv::RowRange& rows = file.tables()[static_cast<std::size_t>(table)].rows;
    return {rows.first + header, rows.end};
  }
  return {file.caption().rows + header, file.index().row_count()};
}

void CsvTableModel::show_file(std::unique_ptr<csv::CsvFile> file, CsvPart part, csv::RowOrder order) {
  beginResetModel();
  file_ = std::move(file);
  part_ = part;
  order_ = std::move(order);
  if (order_.sorted.empty()) order_ = file_order();
  first_data_row_ = file_ ? part_.data_rows(*file_).first : 0;
  columns_ = part_columns();
  endResetModel();
}

void CsvTableModel::show_part(CsvPart part, csv::RowOrder order) {
  show_file(std::move(file_), part, std::move(order));
}

csv::RowOrder CsvTableModel::file_order() const {
  if (!file_) return {};
  const csv::RowRange rows = part_.data_rows(*file_);
  return {rows.first, rows.count()};
}

int CsvTableModel::part_columns() const {
  if (!file_) return 0;
  const bool whole = part_.table == CsvPart::kWholeFile;
  const std::uint32_t columns =
      whole ? file_->index().column_count() : file_->tables()[static_cast<std::size_t>(part_.table)].columns;
  return static_cast<int>(std::min<std::uint32_t>(columns, kMaxColumns));
}

csv::CaptionLines CsvTableModel::caption() const {
  if (!file_) return {};
  if (part_.table == CsvPart::kWholeFile) return file_->caption().lines;
  const csv::Table& table = file_->tables()[static_cast<std::size_t>(part_.table)];
  csv::CaptionLines lines = file_->caption_of_tables();
  lines.insert(lines.end(), table.lines.begin(), table.lines.end());
  return lines;
}

void CsvTableModel::announce_indexed_rows() {
  if (!file_ || !order_.sorted.empty()) return;
  const int columns = part_columns();
  if (columns > columns_) {
    beginInsertColumns({}, columns_, columns - 1);
    columns_ = columns;
    endInsertColumns();
  }
  const csv::RowOrder grown = file_order();
  if (grown.count <= order_.count) return;
  beginInsertRows({}, static_cast<int>(order_.count), static_cast<int>(grown.count) - 1);
  order_ = grown;
  endInsertRows();
}

void CsvTableModel::set_order(csv::RowOrder order) {
  emit layoutAboutToBeChanged({}, VerticalSortHint);
  const QModelIndexList before = persistentIndexList();
  std::vector<std::uint32_t> rows;
  for (const QModelIndex& each : before)
    rows.push_back(order_.file_row(static_cast<std::uint32_t>(each.row())));
  order_ = std::move(order);
  const std::vector<int> lines = lines_of(rows);
  QModelIndexList after;
  for (qsizetype i = 0; i < before.size(); ++i) {
    const int line = lines[static_cast<std::size_t>(i)];
    after.append(line < 0 ? QModelIndex() : index(line, before[i].column()));
  }
  changePersistentIndexList(before, after);
  emit layoutChanged({}, VerticalSortHint);
}

std::vector<int> CsvTableModel::lines_of(const std::vector<std::uint32_t>& file_rows) const {
  std::unordered_map<std::uint32_t, int> wanted;
  for (const std::uint32_t row : file_rows) {
    const bool in_file_order =
        order_.sorted.empty() && row >= order_.first && row - order_.first < order_.count;
    wanted.emplace(row, in_file_order ? static_cast<int>(row - order_.first) : -1);
  }
  for (std::size_t line = 0; line < order_.sorted.size() && !wanted.empty(); ++line) {
    const auto found = wanted.find(order_.sorted[line]);
    if (found != wanted.end()) found->second = static_cast<int>(line);
  }
  std::vector<int> lines;
  for (const std::uint32_t row : file_rows)
    lines.push_back(wanted.at(row));
  return lines;
}

int CsvTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(order_.count);
}

int CsvTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

QVariant CsvTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const std::uint32_t row = order_.file_row(static_cast<std::uint32_t>(index.row()));
  switch (role) {
    case Qt::DisplayRole:
      return shown(file_text(row, index.column()));
    case Qt::ToolTipRole:
      return tool_tip(file_text(row, index.column()));
    case Qt::TextAlignmentRole: {
      const bool number = csv::to_number(cell(row, index.column())).has_value();
      return QVariant::fromValue(Qt::AlignVCenter | (number ? Qt::AlignRight : Qt::AlignLeft));
    }
    default:
      return {};
  }
}

QVariant CsvTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole || section < 0) return {};
  if (orientation == Qt::Horizontal) return column_name(section);
  if (section >= rowCount()) return {};
  return order_.file_row(static_cast<std::uint32_t>(section)) - first_data_row_ + 1;
}

QString CsvTableModel::column_name(int column) const {
  QString name;
  if (part_.header_row && file_ && first_data_row_ <= file_->index().row_count())
    name = shown(file_text(first_data_row_ - 1, column));
  return name.isEmpty() ? tr("Column %1").arg(column + 1) : name;
}

QString CsvTableModel::full_text(int line, int column) const {
  return file_text(order_.file_row(static_cast<std::uint32_t>(line)), column);
}

QString CsvTableModel::file_text(std::uint32_t row, int column) const {
  return qt_text(cell(row, column));
}

std::string CsvTableModel::cell(std::uint32_t row, int column) const {
  std::string text;
  const auto fault = fault_of([&] { text = file_->cell(row, static_cast<std::uint32_t>(column)); });
  if (fault) emit read_failed(qt_text(sentence_of(*fault)));
  return text;
}

}  // namespace qvrcom::ui
