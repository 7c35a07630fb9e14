#include <gmock/gmock.h>

#include <QCheckBox>
#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollBar>
#include <QTableView>
#include <QTest>

#include "doubles/memory_bytes.h"
#include "doubles/memory_files.h"
#include "ui/csv_table_model.h"
#include "ui/frm_view_statistics.h"
#include "ui/uc_stats.h"
#include "ui/visual_components.h"
#include "ui/widget_text.h"

namespace qvrcom::ui {
namespace {

using csv::CsvFile;
using doubles::MemoryBytes;

struct OneFile : csv::ByteSources {
  csv::FileStamp stamp(const std::string& wanted) const override {
    if (wanted != path) throw base::Fault("File not found", "Reading \"" + wanted + "\".");
    return {text.size(), modified, 1};
  }
  std::unique_ptr<csv::ByteSource> open(const std::string&) const override {
    ++opened;
    return std::make_unique<MemoryBytes>(text);
  }
  void change(std::string changed) {
    text = std::move(changed);
    ++modified;
  }

  std::string path = "C:\\Stats1.csv";
  std::string text;
  std::int64_t modified = 0;
  mutable int opened = 0;
};

struct Grid {
  explicit Grid(std::string text) {
    sources.text = std::move(text);
    grid.emplace(sources);
    grid->resize(500, 300);
    grid->show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&*grid));
    load("C:\\Stats1.csv");
  }

  void load(const char* path) {
    grid->setProperty("CSVFileName", path);
    grid->LoadAndDisplay();
    settle();
  }
  void settle() {
    EXPECT_TRUE(QTest::qWaitFor([this] { return !grid->busy(); }, 20'000));
  }
  void sort_by(int column) {
    emit table().horizontalHeader()->sectionClicked(column);
    settle();
  }
  template <class Widget>
  Widget& part(const char* name) {
    return *grid->findChild<Widget*>(QLatin1String(name));
  }
  QTableView& table() { return part<QTableView>("tblStatistics"); }
  std::string status() { return utf8(part<QLabel>("lblStatus").text()); }
  std::string text(int line, int column) {
    return utf8(table().model()->index(line, column).data().toString());
  }
  std::string heading(int section, Qt::Orientation orientation) {
    return utf8(table().model()->headerData(section, orientation).toString());
  }
  std::string current() { return utf8(table().currentIndex().data().toString()); }
  std::string first_column() {
    std::string all;
    for (int line = 0; line < table().model()->rowCount(); ++line)
      all += text(line, 0) + " ";
    return all;
  }

  OneFile sources;
  std::optional<ucStats> grid;
};

const std::string kSmall = "Site,Here\nName,Calls,Busy\nb,9,0\na,10,1\nc,2,2\n";

std::string long_text(int rows) {
  std::string text = "Node,Calls\n";
  for (int i = 0; i < rows; ++i)
    text += "MSG" + std::to_string(i) + "," + std::to_string(i * 7919 % rows) + "\n";
  return text;
}

TEST(UcStats, ShowsAndSortsAFile) {
  Grid grid(kSmall);
  EXPECT_EQ(grid.status(), "3 rows, 3 columns");
  const auto labels = grid.grid->findChildren<QLabel*>();
  EXPECT_TRUE(std::any_of(labels.begin(), labels.end(),
                          [](const QLabel* label) { return label->accessibleName() == "Site: Here"; }));
  const char* orders[] = {"c b a ", "a b c ", "b a c "};  // up, down, the file's own
  for (const char* order : orders) {
    grid.sort_by(1);
    EXPECT_EQ(grid.first_column(), order);
  }
  grid.table().setCurrentIndex(grid.table().model()->index(0, 0));
  QTest::keyClick(&*grid.grid, Qt::Key_S, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return grid.first_column() == "a b c "; }));
  EXPECT_EQ(grid.current(), "b");
  EXPECT_EQ(grid.heading(0, Qt::Vertical) + grid.heading(1, Qt::Horizontal), "2Calls");
  grid.part<QCheckBox>("chkHeaderRow").click();
  EXPECT_EQ(grid.first_column(), "Name b a c ");
  EXPECT_EQ(grid.heading(0, Qt::Vertical) + grid.heading(1, Qt::Horizontal), "1Column 2");
}

TEST(UcStats, SaysWhatCannotBeShown) {
  Grid grid("a,b\n\"1,2");
  EXPECT_EQ(
      grid.status(),
      "1 rows, 2 columns. Line 2: a quotation mark is never closed, so the rest of the file is one row.");
  grid.load("C:\\gone.csv");
  EXPECT_EQ(grid.status(), "The file cannot be shown. File not found: Reading \"C:\\gone.csv\".");
  EXPECT_EQ(grid.table().model()->rowCount(), 0);
}

TEST(UcStats, ReadsAChangedFileAnewAndKeepsTheUsersPlace) {
  constexpr int kRows = 200'000;
  Grid grid(long_text(kRows));
  EXPECT_EQ(grid.table().model()->rowCount(), kRows);
  for (const bool sorted : {false, true}) {
    if (sorted) grid.sort_by(1);
    const QModelIndex cell = grid.table().model()->index(150'000, 1);
    grid.table().scrollTo(cell);
    grid.table().setCurrentIndex(cell);
    const std::string current = grid.current();
    const int scrolled = grid.table().verticalScrollBar()->value();
    const int opened = grid.sources.opened;
    grid.load("C:\\Stats1.csv");
    EXPECT_EQ(grid.sources.opened, opened);  // unchanged: not touched
    grid.sources.change(long_text(kRows) + "new,999999\n");
    grid.load("C:\\Stats1.csv");
    EXPECT_EQ(grid.sources.opened, opened + 1);
    EXPECT_EQ(grid.table().model()->rowCount(), kRows + 1);
    EXPECT_EQ(grid.current(), current);
    EXPECT_EQ(grid.table().selectionModel()->selectedIndexes(), QModelIndexList{grid.table().currentIndex()});
    EXPECT_EQ(grid.table().verticalScrollBar()->value(), scrolled);
    EXPECT_EQ(grid.text(kRows, 0), "new");
  }
}

TEST(UcStats, EachTableOfAFileIsShownByItself) {
  const std::string lines = "SiteName,A\nLine,Calls,Busy\n1,10,3\n2,9,4\n";
  const std::string nodes = "\nNode,Seconds\nb,5\na,7\nlobby,1\n";
  Grid grid(lines + nodes);
  auto& list = grid.part<QListWidget>("lstTables");
  const auto shown = [&] { return grid.first_column() + grid.status(); };
  const auto press = [&](Qt::Key key) {
    QTest::keyClick(&grid.table(), key, Qt::ControlModifier);
    grid.settle();
  };
  EXPECT_TRUE(list.isVisible());
  EXPECT_EQ(shown(), "1 2 2 rows, 3 columns");
  grid.sort_by(1);
  press(Qt::Key_PageDown);
  EXPECT_EQ(shown(), "b a lobby 3 rows, 2 columns");
  EXPECT_EQ(list.currentItem()->text(), "Node");
  grid.part<QLineEdit>("txtFind").setText("LOBBY");
  QTest::keyClick(&grid.table(), Qt::Key_F3);
  grid.settle();
  grid.sort_by(1);
  grid.sort_by(1);
  EXPECT_EQ(shown(), "a b lobby 3 rows, 2 columns");
  press(Qt::Key_PageUp);
  EXPECT_EQ(shown(), "2 1 2 rows, 3 columns");
  EXPECT_EQ(grid.part<QLineEdit>("txtFind").text(), "");
  QTest::keyClick(&list, Qt::Key_End);
  grid.settle();
  EXPECT_EQ(list.currentItem()->text(), "Whole File");
  EXPECT_EQ(shown(), "1 2  Node b a lobby 7 rows, 3 columns");

  press(Qt::Key_PageUp);
  EXPECT_EQ(grid.current(), "lobby");
  grid.sources.change(lines + "3,8,5\n\nHour,Calls\n0,1\n" + nodes + "c,6\n");
  grid.load("C:\\Stats1.csv");
  EXPECT_EQ(shown(), "a c b lobby 4 rows, 2 columns");
  EXPECT_EQ(grid.current(), "lobby");
  EXPECT_EQ(list.currentRow(), 2);
  grid.sources.change(lines);
  grid.load("C:\\Stats1.csv");
  EXPECT_FALSE(list.isVisible());
  EXPECT_EQ(shown(), "2 1 2 rows, 3 columns");
}

TEST(UcStats, ATableThatComesLateJoinsTheOneThatIsShown) {
  constexpr int kRows = 200'000;
  Grid grid(kSmall);
  grid.sources.change(long_text(kRows) + "\nHour,Calls\n00:00,1\n");
  grid.sources.path = "C:\\Stats2.csv";
  grid.grid->setProperty("CSVFileName", "C:\\Stats2.csv");
  grid.grid->LoadAndDisplay();
  auto& list = grid.part<QListWidget>("lstTables");
  EXPECT_FALSE(list.isVisible());
  const QModelIndex cell = grid.table().model()->index(20'000, 1);
  grid.table().setCurrentIndex(cell);
  const int scrolled = grid.table().verticalScrollBar()->value();
  EXPECT_GT(scrolled, 0);
  grid.settle();
  EXPECT_EQ(list.count(), 3);
  EXPECT_EQ(grid.table().model()->rowCount(), kRows);
  for (const int line : {0, 1, 0}) {
    list.setCurrentRow(line);
    EXPECT_EQ(grid.current(), line == 0 ? "180000" : "00:00");
    EXPECT_EQ(grid.table().verticalScrollBar()->value(), line == 0 ? scrolled : 0);
  }
}

TEST(UcStats, FindsNextAndPreviousAndEscapeClosesTheFindLineFirst) {
  Grid grid("Name,Where\nlobby,x\nb,Lobby\nc,z\n");
  int closed = 0;
  QObject::connect(&*grid.grid, &ucStats::CloseRequested, [&] { ++closed; });
  auto& text = grid.part<QLineEdit>("txtFind");
  const auto press = [&](QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&widget, key, modifiers);
    grid.settle();
  };
  press(grid.table(), Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(text.isVisible());
  QTest::keyClicks(&text, "LOBBY");
  const std::pair<Qt::KeyboardModifiers, const char*> steps[] = {
      {Qt::NoModifier, "Lobby"}, {Qt::NoModifier, "lobby"}, {Qt::ShiftModifier, "Lobby"}};
  for (const auto& [modifiers, found] : steps) {
    press(grid.table(), Qt::Key_F3, modifiers);
    EXPECT_EQ(grid.current(), found);
  }
  EXPECT_EQ(grid.status(), "Found in row 2, Where.");
  text.setText("nowhere");
  press(text, Qt::Key_Return);
  EXPECT_EQ(grid.status(), "\"nowhere\" was not found.");
  press(text, Qt::Key_Escape);
  EXPECT_FALSE(text.isVisible());
  EXPECT_EQ(closed, 0);
  press(grid.table(), Qt::Key_Escape);
  EXPECT_EQ(closed, 1);
}

TEST(UcStats, CopiesTheSelectionAsASpreadsheetTakesIt) {
  Grid grid("h,i,j\n1,\"a\"\"b\",3\n4,5,6\n7,8,9\n");
  const auto select = [&](int line, int column) {
    grid.table().selectionModel()->select(grid.table().model()->index(line, column),
                                          QItemSelectionModel::Select);
  };
  grid.table().clearSelection();
  for (const auto& [line, column] : {std::pair{2, 0}, {0, 1}, {0, 0}, {2, 1}})
    select(line, column);
  select(1, 1);
  QTest::keyClick(&grid.table(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(utf8(QGuiApplication::clipboard()->text()), "1\t\"a\"\"b\"\n\t5\n7\t8\n");
}

TEST(FrmViewStatistics, LoadsAtActivationAndEndsWhenTheGridAsks) {
  OneFile sources;
  sources.text = kSmall;
  doubles::MemoryFiles files;
  VisualComponents components;
  EXPECT_THROW(frmViewStatistics(components, files), base::Fault);
  components.add(ucStats::kComponentName, [](QWidget* parent) { return new QWidget(parent); });
  EXPECT_THROW(frmViewStatistics(components, files), base::Fault);
  components.add(ucStats::kComponentName, [&](QWidget* parent) { return new ucStats(sources, parent); });

  files.content["C:\\Stats1.csv"] = "";
  const std::pair<const char*, int> shown[] = {{"C:\\Stats1.csv", 3}, {"C:\\missing.csv", 0}};
  for (const auto& [path, rows] : shown) {
    frmViewStatistics dialog(components, files);
    dialog.hand_over(path);
    dialog.show();
    EXPECT_EQ(dialog.windowTitle(), "Statistics");
    auto* grid = dialog.findChild<ucStats*>("ucStats1");
    EXPECT_EQ(grid->findChild<QTableView*>()->model()->rowCount(), rows);
    EXPECT_EQ(grid->findChild<QLabel*>("lblStatus")->text().isEmpty(), rows == 0);
    QTest::keyClick(grid->findChild<QTableView*>(), Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
  }
}

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
