#pragma once

#include <QElapsedTimer>
#include <QWidget>
#include <memory>
#include <optional>
#include <string>

#include "csv/byte_source.h"
#include "csv/csv_find.h"
#include "csv/csv_sort.h"
#include "ui/slices.h"
#include "ui/uc_stats_views.h"

class QCheckBox;
class QLabel;
class QTableView;

namespace qvrcom::ui {

class CaptionPanel;
class CsvTableModel;
class FindBar;
class TableList;

// The statistics grid: shows any CSV file of any length. The first rows are there at once, the rest is
// indexed while the window stays alive; so are sorting and finding done. Of a file of several tables one is
// shown at a time, or the whole file; each keeps its order, selection, place and search.
//
//   keys   Ctrl+F find, F3 and Shift+F3 next and previous, Ctrl+C copy, Escape closes,
//          Ctrl+PgDown and Ctrl+PgUp next and previous table
//   sort   a click on a column's name: up, down, the file's order; cmdSort does so for the current column
class ucStats : public QWidget {
  Q_OBJECT
  Q_PROPERTY(QString CSVFileName READ CSVFileName WRITE set_CSVFileName)

 public:
  static constexpr const char* kComponentName = "CBL_GUI_Statistics.ucStats";

  // `sources` outlives the grid.
  explicit ucStats(const csv::ByteSources& sources, QWidget* parent = nullptr);
  ~ucStats() override;

  // A suite path or a native one; read by the next LoadAndDisplay().
  QString CSVFileName() const { return csv_file_name_; }
  void set_CSVFileName(const QString& path) { csv_file_name_ = path; }

  // Reads the file unless it is shown already and has not changed. The same file read anew keeps its table,
  // place, order and selection. What cannot be read is said in the status line.
  Q_INVOKABLE void LoadAndDisplay();

  bool busy() const { return loading_.running() || working_.running(); }

 signals:
  // The user is done with the grid.
  void CloseRequested();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void build_table();
  void build_layout();
  void build_list();
  void build_actions();
  QAction* add_action(const QString& caption, const QKeySequence& key, void (ucStats::*handler)());

  void load();
  void forget_file();
  void show_first_rows(std::unique_ptr<csv::CsvFile> file);
  void read_anew(std::unique_ptr<csv::CsvFile> file);
  bool read_anew_step();
  void show_reading();
  void show_read_anew();
  void take_up_indexed();
  void settle();
  void fit_columns();

  TableView& view_of(int table, const csv::CsvFile& file);
  void show_names();
  void keep_view();
  void show_view(TableView& shown);
  void put_back(const TableView& shown);
  void choose_table(int line);
  void next_table() { step_table(1); }
  void previous_table() { step_table(-1); }
  void step_table(int lines);

  void sort_next(int column);
  void sort_current_column();
  void start_sort();
  void set_header_row(bool header_row);
  void show_sort_indicator();

  void open_find();
  void close_find();
  void find_next() { find(csv::FindDirection::kForward); }
  void find_previous() { find(csv::FindDirection::kBackward); }
  void find(csv::FindDirection direction);
  csv::CellPlace find_start(csv::FindDirection direction) const;
  void show_found();
  void copy();

  void say(const QString& text);
  void say_totals();
  void say_fault(const QString& what, const base::Fault& fault);

  const csv::ByteSources& sources_;
  QString csv_file_name_;
  std::string shown_path_;
  std::optional<csv::FileStamp> shown_stamp_;

  CsvTableModel* model_;
  QTableView* table_;
  CaptionPanel* caption_;
  QLabel* list_label_;
  TableList* list_;
  FindBar* find_bar_;
  QCheckBox* header_row_;
  QLabel* status_;

  Slices loading_;  // indexing, and all of a file that is read anew
  Slices working_;  // sorting or finding in the file that is shown
  TableViews views_;
  std::unique_ptr<csv::CsvFile> next_file_;
  std::unique_ptr<csv::SortTask> sort_;
  std::unique_ptr<csv::FindTask> find_;
  QElapsedTimer since_announced_;
  int sort_column_ = -1;
  csv::SortDirection sort_direction_ = csv::SortDirection::kAscending;
  std::optional<csv::FindDirection> waiting_find_;  // asked for while another task runs
};

}  // namespace qvrcom::ui
