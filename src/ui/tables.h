#pragma once

class QAbstractItemModel;
class QTableView;

namespace qvrcom::ui {

// A table of which whole rows are selected, one at a time. Tab leaves it, arrows move in it, a click on a
// heading sorts it.
void prepare_row_table(QTableView& table, QAbstractItemModel& model);

}  // namespace qvrcom::ui
