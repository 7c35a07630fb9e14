#include "desktop/value_table_model.h"

#include <QDateTime>

#include "desktop/tables.h"
#include "ui/widget_text.h"

namespace qvrcom::desktop {

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
