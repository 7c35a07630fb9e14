#include "desktop/tables.h"

#include <QDateTime>
#include <QHeaderView>
#include <QTableView>
#include <algorithm>

#include "ui/widget_text.h"

namespace qvrcom::desktop {
namespace {

enum Kind { kNothing, kNumber, kMoment, kText };

Kind kind_of(const QVariant& value) {
  if (!value.isValid() || value.isNull()) return kNothing;
  if (value.typeId() == QMetaType::QDateTime) return kMoment;
  if (value.typeId() == QMetaType::QString) return value.toString().isEmpty() ? kNothing : kText;
  return kNumber;
}

// The C locale knows the order of bytes alone.
QLocale ordering_locale() {
  const QLocale system;
  return system.language() == QLocale::C ? QLocale(QLocale::English) : system;
}

}  // namespace

ValueOrder::ValueOrder() : names_(ordering_locale()) {
  names_.setNumericMode(true);
  names_.setCaseSensitivity(Qt::CaseInsensitive);
}

bool ValueOrder::less(const QVariant& left, const QVariant& right) const {
  const Kind kind = kind_of(left);
  if (kind != kind_of(right)) return kind < kind_of(right);
  if (kind == kNumber) return left.toDouble() < right.toDouble();
  if (kind == kMoment) return left.toDateTime() < right.toDateTime();
  return kind == kText && names_.compare(left.toString(), right.toString()) < 0;
}

ValueSort::ValueSort(QAbstractItemModel* model, QObject* parent) : QSortFilterProxyModel(parent) {
  setSourceModel(model);
  setDynamicSortFilter(true);
}

bool ValueSort::lessThan(const QModelIndex& left, const QModelIndex& right) const {
  return order_.less(left.data(kSortRole), right.data(kSortRole));
}

QVariant name_value(const QString& name) {
  constexpr qsizetype kStamp = 13;
  const auto moment = base::from_job_name(ui::utf8(name));
  return moment ? ui::moment_text(*moment) + name.mid(kStamp) : name;
}

void prepare_row_table(QTableView& table, QAbstractItemModel& model) {
  table.setModel(&model);
  table.setSelectionBehavior(QAbstractItemView::SelectRows);
  table.setSelectionMode(QAbstractItemView::SingleSelection);
  table.setTabKeyNavigation(false);
  table.setSortingEnabled(true);
  table.sortByColumn(-1, Qt::AscendingOrder);
  table.setWordWrap(false);
  table.setAlternatingRowColors(true);
  table.setShowGrid(false);
  table.horizontalHeader()->setHighlightSections(false);
  table.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  table.verticalHeader()->setDefaultSectionSize(table.fontMetrics().lineSpacing() + 8);
  // A table that gets the focus by a key frames its first cell, which no key would select then.
  const auto select = [&table](const QModelIndex& current) {
    if (current.isValid() && !table.selectionModel()->hasSelection()) table.selectRow(current.row());
  };
  QObject::connect(table.selectionModel(), &QItemSelectionModel::currentChanged, &table, select);
}

void widen_columns(QTableView& table) {
  QHeaderView& header = *table.horizontalHeader();
  const QAbstractItemView& cells = table;
  for (int column = 0; column < header.count(); ++column) {
    const int wanted = std::max(header.sectionSizeHint(column), cells.sizeHintForColumn(column));
    if (wanted > header.sectionSize(column)) header.resizeSection(column, wanted);
  }
}

void ValueTableModel::show(std::vector<QVariantList> rows) {
  beginResetModel();
  rows_ = std::move(rows);
  endResetModel();
}

int ValueTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int ValueTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(headings_.size());
}

QVariant ValueTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || (role != Qt::DisplayRole && role != kSortRole)) return {};
  const QVariant& value = rows_[static_cast<std::size_t>(index.row())][index.column()];
  if (role == kSortRole && value.typeId() == QMetaType::QString) return name_value(value.toString());
  if (role == kSortRole || value.typeId() != QMetaType::QDateTime) return value;
  return ui::moment_text(value.toDateTime());
}

QVariant ValueTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole) return {};
  if (orientation == Qt::Horizontal) return headings_[section];
  return section + 1;
}

}  // namespace qvrcom::desktop
