#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <QVariantList>
#include <vector>

namespace qvrcom::desktop {

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
