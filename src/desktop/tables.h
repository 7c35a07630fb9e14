#pragma once

#include <QCollator>
#include <QSortFilterProxyModel>

class QTableView;

namespace qvrcom::desktop {

// What a cell is sorted by, where that is not what it shows: a moment (QDateTime), a number or a text.
inline constexpr int kSortRole = Qt::UserRole;

// In the order of values: cells without one first, then numbers, moments and, as the locale orders names,
// texts, in which numbers count as such ("Office 9" before "Office 10") and letter case does not.
class ValueOrder {
 public:
  ValueOrder();
  bool less(const QVariant& left, const QVariant& right) const;

 private:
  QCollator names_;
};

// A table's rows in the order of the values of the column that the user has chosen.
class ValueSort : public QSortFilterProxyModel {
 public:
  ValueSort(QAbstractItemModel* model, QObject* parent);

 protected:
  bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

 private:
  ValueOrder order_;
};

// The name of a job, or of a file named after one, as it is sorted: by the moment that it begins with.
QVariant name_value(const QString& name);

// A table of which whole rows are selected, one at a time. Tab leaves it, arrows move in it, a click on a
// heading sorts it.
void prepare_row_table(QTableView& table, QAbstractItemModel& model);

// Gives every column at least the room that its visible cells need.
void widen_columns(QTableView& table);

}  // namespace qvrcom::desktop
