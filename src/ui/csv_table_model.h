#pragma once

#include <QAbstractTableModel>
#include <memory>

#include "csv/csv_file.h"
#include "csv/row_order.h"

namespace qvrcom::ui {

// The part of a CSV file that is shown: one of its tables, or the file as it is.
struct CsvPart {
  static constexpr int kWholeFile = -1;

  int table = kWholeFile;
  bool header_row = true;  // the part's first row names the columns

  // The part's rows behind its caption and header, as far as they are indexed.
  csv::RowRange data_rows(const csv::CsvFile& file) const;
};

// A part of a CSV file as a table for views and, in the same way, for charts: cells are read when they are
// asked for. The caption rows are left out; the header row, when there is one, names the columns.
class CsvTableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  static constexpr int kMaxColumns = 16384;  // a view keeps a record per column

  using QAbstractTableModel::QAbstractTableModel;

  // Shows a part of a file whose first rows are indexed and whose tables were looked for, in an order made
  // for the part, or in the file's own; null shows nothing.
  void show_file(std::unique_ptr<csv::CsvFile> file, CsvPart part = {}, csv::RowOrder order = {});
  // Another part of the same file.
  void show_part(CsvPart part, csv::RowOrder order = {});
  csv::CsvFile* file() const { return file_.get(); }
  CsvPart part() const { return part_; }
  csv::CaptionLines caption() const;

  // Takes up the rows and columns that were indexed meanwhile; in the file's own order only.
  void announce_indexed_rows();

  void set_order(csv::RowOrder order);
  void set_file_order() { set_order(file_order()); }
  const csv::RowOrder& order() const { return order_; }
  // Row of the file of the part's first row behind the header.
  std::uint32_t first_data_row() const { return first_data_row_; }
  // The lines on which rows of the file stand; -1 for a row that is not shown. One pass for all of them.
  std::vector<int> lines_of(const std::vector<std::uint32_t>& file_rows) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  // The cell as it is, where data() shows one line of bounded length.
  QString full_text(int line, int column) const;

 signals:
  void read_failed(const QString& why) const;

 private:
  csv::RowOrder file_order() const;
  QString column_name(int column) const;
  QString file_text(std::uint32_t row, int column) const;
  std::string cell(std::uint32_t row, int column) const;
  int part_columns() const;

  std::unique_ptr<csv::CsvFile> file_;
  CsvPart part_;
  csv::RowOrder order_;
  std::uint32_t first_data_row_ = 0;
  int columns_ = 0;
};

}  // namespace qvrcom::ui
