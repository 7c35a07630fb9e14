#include "ui/tables.h"

#include <QHeaderView>
#include <QTableView>

namespace qvrcom::ui {

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
}

}  // namespace qvrcom::ui
