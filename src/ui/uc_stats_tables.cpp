// The statistics grid: the tables of its file, and what is kept of each while another one is shown.
#include <QCheckBox>
#include <QHeaderView>
#include <QLabel>
#include <QSignalBlocker>
#include <QTableView>
#include <algorithm>
#include <utility>

#include "ui/csv_table_model.h"
#include "ui/elements.h"
#include "ui/uc_stats.h"
#include "ui/uc_stats_parts.h"

namespace qvrcom::ui {
namespace {

constexpr int kRowsThatFitColumns = 100;
constexpr int kColumnsThatAreFitted = 200;
constexpr int kNarrowColumn = 48;
constexpr int kWideColumn = 320;
constexpr int kCellPadding = 18;

}  // namespace

void ucStats::build_list() {
  list_ = new TableList(this);
  list_label_ = label_for(list_, "lblTables", tr("&Tables"), this);
  list_label_->hide();
  connect(list_, &QListWidget::currentRowChanged, this, &ucStats::choose_table);
  connect(list_, &QListWidget::itemActivated, table_, [this] { table_->setFocus(); });
}

// A table that joins the first one ends it, before that one takes up the rows behind.
void ucStats::take_up_indexed() {
  show_names();
  model_->announce_indexed_rows();
}

TableView& ucStats::view_of(int table, const csv::CsvFile& file) {
  const bool whole = table == CsvPart::kWholeFile;
  return views_.of(table, whole || file.tables()[static_cast<std::size_t>(table)].header);
}

// The list stands beside the grid from the second table on.
void ucStats::show_names() {
  const bool was_alone = list_->count() == 0;
  views_.take_names(*model_->file());
  QStringList names;
  for (const std::string& name : views_.names())
    names.append(qt_text(name).simplified());
  if (!names.isEmpty()) names.append(tr("Whole File"));
  const bool joined = was_alone && !names.isEmpty() && model_->part().table == CsvPart::kWholeFile;
  if (joined) {
    keep_view();
    show_view(views_.of_first(model_->file()->tables().front().header));
  }
  list_->set_names(names);
  list_label_->setVisible(!names.isEmpty());
  const int table = model_->part().table;
  const QSignalBlocker quiet(list_);
  list_->setCurrentRow(table == CsvPart::kWholeFile ? list_->count() - 1 : table);
}

void ucStats::keep_view() {
  TableView& kept = views_.of(model_->part().table);
  kept.part = model_->part();
  kept.sort_column = sort_column_;
  kept.direction = sort_direction_;
  kept.order = model_->order().sorted.empty() ? csv::RowOrder{} : model_->order();
  kept.place.emplace(*table_);
  kept.column_widths.clear();
  for (int column = 0; column < model_->columnCount(); ++column)
    kept.column_widths.push_back(table_->columnWidth(column));
  kept.searched = find_bar_->text();
}

void ucStats::show_view(TableView& shown) {
  model_->show_part(shown.part, std::exchange(shown.order, {}));
  put_back(shown);
}

// All of the view but what the model has.
void ucStats::put_back(const TableView& shown) {
  const QSignalBlocker quiet(header_row_);
  header_row_->setChecked(model_->part().header_row);
  caption_->set_lines(model_->caption());
  sort_column_ = shown.sort_column;
  sort_direction_ = shown.direction;
  show_sort_indicator();
  if (shown.column_widths.empty()) fit_columns();
  for (std::size_t i = 0; i < shown.column_widths.size(); ++i)
    table_->setColumnWidth(static_cast<int>(i), shown.column_widths[i]);
  if (shown.searched) find_bar_->set_text(*shown.searched);
  if (shown.place)
    shown.place->restore(*table_);
  else if (model_->rowCount() > 0)
    table_->setCurrentIndex(model_->index(0, 0));
}

void ucStats::choose_table(int line) {
  if (line < 0 || model_->file() == nullptr) return;
  const bool whole = line == list_->count() - 1;
  working_.cancel();
  find_.reset();
  sort_.reset();
  waiting_find_.reset();
  keep_view();
  show_view(view_of(whole ? CsvPart::kWholeFile : line, *model_->file()));
  if (!loading_.running()) settle();
}

void ucStats::step_table(int lines) {
  if (list_->count() > 0)
    list_->setCurrentRow(std::clamp(list_->currentRow() + lines, 0, list_->count() - 1));
}

void ucStats::fit_columns() {
  const QFontMetrics metrics = table_->fontMetrics();
  for (int column = 0; column < std::min(model_->columnCount(), kColumnsThatAreFitted); ++column) {
    const QString name = model_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    int width = metrics.horizontalAdvance(name) + metrics.averageCharWidth() * 2;  // and the sort arrow
    for (int line = 0; line < std::min(model_->rowCount(), kRowsThatFitColumns); ++line) {
      const QString text = model_->data(model_->index(line, column), Qt::DisplayRole).toString();
      width = std::max(width, metrics.horizontalAdvance(text));
    }
    table_->setColumnWidth(column, std::clamp(width + kCellPadding, kNarrowColumn, kWideColumn));
  }
}

}  // namespace qvrcom::ui
