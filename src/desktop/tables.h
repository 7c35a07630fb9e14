#pragma once

#include <QAbstractTableModel>
#include <QCollator>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QStringList>
#include <QVariantList>
#include <QWidget>
#include <cstddef>
#include <vector>

#include "ui/elements.h"

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

// A table of which whole rows are selected, one at a time: the first when the focus comes by a key. Tab
// leaves it, arrows move in it, a click on a heading sorts it.
void prepare_row_table(QTableView& table, QAbstractItemModel& model);

// Gives every column at least the room that its visible cells need.
void widen_columns(QTableView& table);

// One button of a page's strip: where the page keeps it, its object name, its caption with a mnemonic, and
// what a click does.
template <class Page>
struct StripButton {
  QPushButton* Page::*button;
  const char* name;
  const char* caption;
  void (Page::*action)();
};

// The buttons side by side, the first `left` of them at the left edge and the others at the right one.
template <class Page, std::size_t kCount>
QWidget* button_strip(Page* page, const StripButton<Page> (&rows)[kCount], int left) {
  auto* strip = new QWidget(page);
  auto* line = new QHBoxLayout(strip);
  line->setContentsMargins({});
  for (const StripButton<Page>& row : rows) {
    auto* button = ui::captioned<QPushButton>(row.name, QString::fromLatin1(row.caption), strip);
    button->setAutoDefault(true);
    QObject::connect(button, &QPushButton::clicked, page, row.action);
    page->*row.button = button;
    line->addWidget(button);
  }
  line->insertStretch(left);
  return strip;
}

// A table of plain values, to be read only: numbers, moments (QDateTime) and texts, sorted by what they are.
class ValueTableModel : public QAbstractTableModel {
 public:
  ValueTableModel(QStringList headings, QObject* parent)
      : QAbstractTableModel(parent), headings_(std::move(headings)) {}

  // Every row has a value for each heading.
  void show(std::vector<QVariantList> rows);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QStringList headings_;
  std::vector<QVariantList> rows_;
};

}  // namespace qvrcom::desktop
