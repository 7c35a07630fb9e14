#include "ui/uc_stats_selection.h"

#include <QItemSelection>
#include <QScrollBar>
#include <QTableView>
#include <algorithm>

#include "ui/csv_table_model.h"

namespace qvrcom::ui {
namespace {

// A selection of more scattered rows than this is not kept row by row.
constexpr int kKeptRows = 10'000;

QString quoted(QString text) {
  constexpr auto special = [](QChar c) { return c == u'\t' || c == u'\n' || c == u'\r' || c == u'"'; };
  if (std::none_of(text.cbegin(), text.cend(), special)) return text;
  return u'"' + text.replace(QLatin1String("\""), QLatin1String("\"\"")) + u'"';
}

// Ranges by their first line; a line is looked up among those that reach it.
class SelectedLines {
 public:
  explicit SelectedLines(const QItemSelection& selection) : ranges_(selection.cbegin(), selection.cend()) {
    std::sort(ranges_.begin(), ranges_.end(), [](const auto& a, const auto& b) { return a.top() < b.top(); });
    for (const QItemSelectionRange& range : ranges_) {
      left_ = std::min(left_, range.left());
      right_ = std::max(right_, range.right());
    }
  }

  // Calls `handle(line, is_selected)` for each line with a selected cell until it answers false.
  template <class Handle>
  bool for_each(Handle handle) {
    const auto selected = [this](int column) {
      return std::any_of(active_.cbegin(), active_.cend(), [&](const auto& range) {
        return column >= range.left() && column <= range.right();
      });
    };
    for (int line = advance(0); line >= 0; line = advance(line + 1))
      if (!handle(line, selected)) return false;
    return true;
  }

  int left() const { return left_; }
  int right() const { return right_; }

 private:
  // The first line from `line` on that has a selected cell, with its ranges active; -1 when there is none.
  int advance(int line) {
    std::erase_if(active_, [&](const auto& range) { return range.bottom() < line; });
    if (active_.empty() && next_ < ranges_.size()) line = std::max(line, ranges_[next_].top());
    for (; next_ < ranges_.size() && ranges_[next_].top() <= line; ++next_)
      if (ranges_[next_].bottom() >= line) active_.push_back(ranges_[next_]);
    return active_.empty() ? -1 : line;
  }

  std::vector<QItemSelectionRange> ranges_;
  std::vector<QItemSelectionRange> active_;
  std::size_t next_ = 0;
  int left_ = CsvTableModel::kMaxColumns;
  int right_ = -1;
};

const CsvTableModel& model_of(const QTableView& view) {
  return static_cast<const CsvTableModel&>(*view.model());
}

}  // namespace

std::optional<QString> selection_text(const CsvTableModel& model, const QItemSelection& selection,
                                      qsizetype limit) {
  QString text;
  SelectedLines lines(selection);
  const bool whole = lines.for_each([&](int line, const auto& selected) {
    for (int column = lines.left(); column <= lines.right(); ++column) {
      if (column > lines.left()) text += u'\t';
      if (selected(column)) text += quoted(model.full_text(line, column));
    }
    text += u'\n';
    return text.size() <= limit;
  });
  if (!whole) return std::nullopt;
  return text;
}

ViewPlace::ViewPlace(const QTableView& view)
    : horizontal_(view.horizontalScrollBar()->value()), vertical_(view.verticalScrollBar()->value()) {
  const csv::RowOrder& order = model_of(view).order();
  const std::uint32_t first = model_of(view).first_data_row();
  const auto row = [&](int line) { return order.file_row(static_cast<std::uint32_t>(line)) - first; };
  const QModelIndex current = view.currentIndex();
  if (current.isValid())
    current_.push_back({row(current.row()), row(current.row()), current.column(), current.column()});
  int kept = 0;
  for (const QItemSelectionRange& range : view.selectionModel()->selection()) {
    if (order.sorted.empty())
      selected_.push_back({row(range.top()), row(range.bottom()), range.left(), range.right()});
    else
      for (int line = range.top(); line <= range.bottom() && kept < kKeptRows; ++line, ++kept)
        selected_.push_back({row(line), row(line), range.left(), range.right()});
  }
}

void ViewPlace::restore(QTableView& view) const {
  const CsvTableModel& model = model_of(view);
  const std::uint32_t first = model.first_data_row();
  std::vector<std::uint32_t> rows;
  for (const auto* list : {&selected_, &current_})
    for (const Range& range : *list)
      rows.insert(rows.end(), {range.first_row + first, range.last_row + first});
  const std::vector<int> lines = model.lines_of(rows);
  const int last_column = model.columnCount() - 1;
  QItemSelection selection;
  for (std::size_t i = 0; i < selected_.size(); ++i) {
    const Range& range = selected_[i];
    // A range whose end is gone ends with the table.
    const int bottom =
        lines[2 * i + 1] < 0 && model.order().sorted.empty() ? model.rowCount() - 1 : lines[2 * i + 1];
    if (lines[2 * i] < 0 || bottom < 0 || range.left > last_column) continue;
    selection.append(
        {model.index(lines[2 * i], range.left), model.index(bottom, std::min(range.right, last_column))});
  }
  if (!current_.empty() && lines.back() >= 0)
    view.selectionModel()->setCurrentIndex(model.index(lines.back(), current_[0].left),
                                           QItemSelectionModel::NoUpdate);
  view.selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
  view.horizontalScrollBar()->setValue(horizontal_);
  view.verticalScrollBar()->setValue(vertical_);
}

}  // namespace qvrcom::ui
