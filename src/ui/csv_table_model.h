#pragma once

#include <QAbstractTableModel>
#include <memory>

#include "csv/csv_file.h"
#include "csv/row_order.h"

namespace qvrcom::ui {

// A CSV file as a table for views and, in the same way, for charts: cells are read when they are asked for.
// The caption rows are left out; the header row, when there is one, names the columns.
class CsvTableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  static constexpr int kMaxColumns = 16384;  // a view keeps a record per column

  using QAbstractTableModel::QAbstractTableModel;

  // Shows a file of which the first rows are indexed; null shows nothing.
  void show_file(std::unique_ptr<csv::CsvFile> file);
  // Shows a file that is indexed to its end, in an order made for it.
  void show_file(std::unique_ptr<csv::CsvFile> file, csv::RowOrder order);
  csv::CsvFile* file() const { return file_.get(); }
  const csv::Caption& caption() const { return caption_; }

  // Takes up the rows and columns that were indexed meanwhile; in the file's own order only.
  void announce_indexed_rows();

  void set_header_row(bool header_row);
  bool header_row() const { return header_row_; }
  // The first row of a file behind its caption and header.
  std::uint32_t first_data_row(csv::CsvFile& file) const;

  void set_order(csv::RowOrder order);
  void set_file_order() { set_order(file_order()); }
  const csv::RowOrder& order() const { return order_; }
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
  int file_columns() const;

  std::unique_ptr<csv::CsvFile> file_;
  csv::Caption caption_;
  csv::RowOrder order_;
  int columns_ = 0;
  bool header_row_ = true;
};

}  // namespace qvrcom::ui
