#pragma once

#include <QString>
#include <optional>
#include <vector>

class QItemSelection;
class QTableView;

namespace qvrcom::ui {

class CsvTableModel;

// The selected cells as a spreadsheet takes them: tabs between cells, line feeds between lines, the smallest
// rectangle of columns around the selection with unselected cells empty. A cell with a tab, a line break or a
// quotation mark stands in quotation marks. Nothing when the text would grow beyond `limit` characters.
std::optional<QString> selection_text(const CsvTableModel& model, const QItemSelection& selection,
                                      qsizetype limit);

// Where the user stands in a table, in rows of the table before it is sorted, so that it can be found again
// after another table was shown, or in a file that was read anew and perhaps sorted differently.
class ViewPlace {
 public:
  explicit ViewPlace(const QTableView& view);
  void restore(QTableView& view) const;

 private:
  struct Range {
    std::uint32_t first_row, last_row;
    int left, right;
  };

  std::vector<Range> selected_;
  std::vector<Range> current_;  // none or one cell
  int horizontal_ = 0;
  int vertical_ = 0;
};

}  // namespace qvrcom::ui
