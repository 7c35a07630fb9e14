#include "ui/csv_table_model.h"

#include <gmock/gmock.h>

#include <QCoreApplication>

#include "doubles/memory_bytes.h"
#include "ui/widget_text.h"

namespace qvrcom::ui {
namespace {

using csv::CsvFile;
using doubles::MemoryBytes;

std::unique_ptr<CsvFile> file_of(std::string text) {
  auto file = std::make_unique<CsvFile>(std::make_unique<MemoryBytes>(std::move(text)));
  file->index().index_all();
  file->find_tables();
  return file;
}

std::string shown(const CsvTableModel& model, int line, int column, int role = Qt::DisplayRole) {
  return utf8(model.data(model.index(line, column), role).toString());
}

TEST(CsvTableModel, ShowsOneLineAndKeepsTheWholeText) {
  CsvTableModel model;
  model.show_file(
      file_of("h\n\"a\r\nb\"\n\"x" + std::string(1, '\0') + "\"\n" + std::string(600, 'y') + "\n<b>\"\n7\n"));
  EXPECT_EQ(shown(model, 0, 0),
            "a\xE2\x86\xB5"
            "b");
  EXPECT_EQ(shown(model, 0, 0, Qt::ToolTipRole), "<p style='white-space:pre-wrap'>a\r\nb</p>");
  EXPECT_EQ(utf8(model.full_text(0, 0)), "a\r\nb");
  EXPECT_EQ(shown(model, 1, 0), "x\xE2\x90\x80");
  EXPECT_EQ(shown(model, 2, 0).size(), 503U);
  EXPECT_EQ(model.full_text(2, 0).size(), 600);
  EXPECT_EQ(model.data(model.index(4, 0), Qt::TextAlignmentRole).toInt(), Qt::AlignVCenter | Qt::AlignRight);
  EXPECT_EQ(model.data(model.index(3, 0), Qt::TextAlignmentRole).toInt(), Qt::AlignVCenter | Qt::AlignLeft);
}

TEST(CsvTableModel, GrowsWithTheIndex) {
  auto file = std::make_unique<CsvFile>(std::make_unique<MemoryBytes>("h\n1\n2\n3,wide\n"));
  CsvFile& indexed = *file;
  indexed.index().index_some(5);
  indexed.find_tables();
  CsvTableModel model;
  model.show_file(std::move(file));
  EXPECT_EQ(model.rowCount(), 1);
  QList<QPair<int, int>> added;
  QObject::connect(&model, &QAbstractItemModel::rowsInserted, &model,
                   [&](const QModelIndex&, int first, int last) {
                     added.append({first, last});
                   });
  indexed.index().index_all();
  indexed.find_tables();
  model.announce_indexed_rows();
  EXPECT_EQ(added, (QList<QPair<int, int>>{{1, 2}}));
  EXPECT_EQ(model.columnCount(), 2);
  EXPECT_EQ(shown(model, 2, 1), "wide");
}

TEST(CsvTableModel, SaysThatARowCannotBeRead) {
  auto bytes = std::make_unique<MemoryBytes>("h\na\n");
  MemoryBytes& medium = *bytes;
  auto file = std::make_unique<CsvFile>(std::move(bytes));
  file->index().index_all();
  CsvTableModel model;
  model.show_file(std::move(file));
  QString why;
  QObject::connect(&model, &CsvTableModel::read_failed, &model, [&](const QString& text) { why = text; });
  medium.fails_from = 0;
  EXPECT_EQ(shown(model, 0, 0), "");
  EXPECT_EQ(utf8(why), "Device error: The disk cannot be read.");
}

}  // namespace
}  // namespace qvrcom::ui
