#include <gmock/gmock.h>

#include "csv/csv_file.h"
#include "csv/csv_find.h"
#include "csv/csv_records.h"
#include "csv/csv_sort.h"
#include "csv/csv_tables.h"
#include "csv/text.h"
#include "doubles/memory_bytes.h"

namespace qvrcom::csv {
namespace {

using Records = std::vector<Record>;
using Rows = std::vector<std::uint32_t>;
using doubles::MemoryBytes;
using namespace std::string_literals;

CsvFile file_of(std::string text) {
  return CsvFile(std::make_unique<MemoryBytes>(std::move(text)));
}

TEST(CsvFile, ReadsAnyRowOfALongFile) {
  constexpr std::uint32_t kRows = 20'000;
  std::string text;
  for (std::uint32_t i = 0; i < kRows; ++i)
    text += std::to_string(i) + ",\"line\n" + std::to_string(i) + "\"\n";
  CsvFile file = file_of(text);
  file.index().index_all();
  ASSERT_EQ(file.index().row_count(), kRows);
  for (std::uint32_t i = 0; i < kRows; ++i) {
    const std::uint32_t row = i * 7919 % kRows;  // a prime step visits every row, far apart
    ASSERT_EQ(file.cell(row, 0), std::to_string(row));
    ASSERT_EQ(file.cell(row, 1), "line\n" + std::to_string(row));
    ASSERT_EQ(file.cell(row, 2), "");
  }
}

TEST(CsvFile, StaysWithinItsBounds) {
  MemoryBytes five("1\n2\n3\n4\n5\n");
  CsvIndex index(five, 3);
  index.index_all();
  EXPECT_EQ(index.row_count(), 3U);
  EXPECT_TRUE(index.rows_left_out());
  EXPECT_EQ(index.row(2).length, 2U);

  CsvFile huge = file_of("\"" + std::string(3 * RowReader::kRowLimit, 'x'));
  huge.index().index_all();
  EXPECT_EQ(huge.row(0)[0].size(), RowReader::kRowLimit - 1);
}

TEST(CsvFile, SurvivesAFileThatIsCutShortAndSaysWhenTheMediumFails) {
  CsvFile cut(std::make_unique<MemoryBytes>("a,b\nc,d", 1000));
  cut.index().index_all();
  EXPECT_EQ(cut.index().row_count(), 2U);
  EXPECT_EQ(cut.cell(1, 1), "d");

  auto failing = std::make_unique<MemoryBytes>("a,b\nc,d\n");
  failing->fails_from = 6;
  CsvFile file(std::move(failing));
  EXPECT_THROW(file.index().index_all(), base::Fault);
}

TEST(CsvFile, TellsACaptionFromData) {
  struct Case {
    const char* text;
    std::vector<std::pair<std::string, std::string>> lines;
    std::uint32_t rows;
  };
  const Case cases[] = {
      {"SiteName,USA_Office\nUserSiteID,101\nNode,Calls,Busy\n1,2,3\n",
       {{"SiteName", "USA_Office"}, {"UserSiteID", "101"}},
       2},
      {"Site,Caf\xE9\n\nNode,Calls,Busy\n", {{"Site", "Caf\xC3\xA9"}}, 2},
      {"SiteName,\nUserSiteID,1\na,b\nc,d\n", {{"SiteName", ""}, {"UserSiteID", "1"}}, 2},
      {"a,b\nc,d\n", {}, 0},           // two columns throughout: data
      {"\na,b\nc,d,e\n", {}, 0},       // an empty line at the start
      {"a,b\nalone\nc,d,e\n", {}, 0},  // a row that is neither
  };
  for (const Case& each : cases) {
    CsvFile file = file_of(each.text);
    file.index().index_all();
    file.find_tables();
    const Caption& caption = file.caption();
    EXPECT_EQ(caption.lines, each.lines) << each.text;
    EXPECT_EQ(caption.rows, each.rows) << each.text;
  }
}

// "name first-end[ no header]" per table; then the caption's lines.
std::string tables_of(CsvFile& file) {
  file.find_tables();
  std::string text;
  for (const Table& table : file.tables()) {
    text += table.name + " " + std::to_string(table.rows.first) + "-" + std::to_string(table.rows.end) +
            (table.header ? "" : " no header") + " x" + std::to_string(table.columns);
    for (const auto& [name, value] : table.lines)
      text += " [" + name + ":" + value + "]";
    text += "; ";
  }
  for (const auto& [name, value] : file.caption_of_tables())
    text += "[" + name + ":" + value + "]";
  return text;
}

TEST(CsvTables, AreToldApartByEmptyLinesAndHeaders) {
  const struct {
    const char* file;
    const char* tables;
  } cases[] = {
      {"SiteName,A\r\nUserSiteID,1\r\nReport,R\r\nLine,Calls,Busy\r\n1,2,3\r\n\r\nNode,Name,Hits\r\nMSG1,x,"
       "2\r\n"
       "\r\n\r\nHour,Calls\r\n00:00,1\r\n\r\n",
       "Line 3-5 x3; Node 6-8 x3; Hour 10-12 x2; [SiteName:A][UserSiteID:1][Report:R]"},
      {"Node,Name,Hits\rM1,a,2\r\rNode,Choice,Hits\rA1,b,1\r\rNODE,Choice,To\rA1,c,1\r\r"
       "Node,Choice,To\rA1,c,1\r",
       "Node, Name 0-2 x3; Node, Choice, Hits 3-5 x3; NODE, Choice, To 6-8 x3; Node, Choice, To (2) 9-11 "
       "x3; "},
      // titles, in front of the table or a line away; two-cell lines of a table of its own
      {"Lines\nLine,Calls\n1,2\n\nNodes\n\nNode,Name,Hits\nM1,x,2\n\nHours\nPartition,3\nHour,Calls,Busy\n0,"
       "1,2\n",
       "Lines 1-3 x2; Nodes 6-8 x3; Hours 11-13 x3 [Partition:3]; "},
      // no header in the same width goes on, in another width stands alone; a remark belongs to what is in
      // front
      {"Line,Calls,Busy\n1,2,3\n\nTotal,2,3\n\n2026,2027\n5,6\n\nEnd\n",
       "Line 0-4 x3; Table 2 5-9 no header x2; "},
      {"Line,2024\n1,2\n\nNode,Hits\nM1,2\n", "Table 1 0-2 no header x2; Node 3-5 x2; "},
      // no rows, one row of texts, ragged and padded rows, cells in quotation marks
      {"A,B,C\n\nD,E\n\nx,y\n\nF,G,H\n1\n,2,,,\n", "A 0-1 x3; D 2-5 x2; F 6-9 x3; "},
      {"Site,A,,\n,,\nNode,Hits,,\n\"M,1\",2,,\n\"\",,\n\"a \"\"b\"\"\",\"c\nd\"\nx,1\n",
       "Node 2-4 x2; a \"b\" 5-7 x2; [Site:A]"},
      {"A,B,C\n1,2,3,4\n\nD,E\n1,2\n\nEnd,\n",
       "Table 1 0-2 no header x4; D 3-5 x2; Table 3 6-7 no header x1; "},
      // a first block of two columns: about the file, or numbers
      {"SiteName,A\nUserSiteID,1\nHour,Calls\n00:00,1\n\nNode,Hits\nM1,3\n",
       "Hour 2-4 x2; Node 5-7 x2; [SiteName:A][UserSiteID:1]"},
      {"Report\n\nSite,A\nMade,2026-11-15 12:10:05\n\nNode,Hits,Name\nM1,3,x\n\n1,2\n3,4\n",
       "Node 5-7 x3; Table 2 8-10 no header x2; [:Report][Site:A][Made:2026-11-15 12:10:05]"},
      {"SiteName,A\nUserSiteID,1\n", "[SiteName:A][UserSiteID:1]"},
      // a single figure is never a title, whether it has one, a header, or stands alone
      {"Calls\n42\n\nTotal\n\n43\n\n44\n\nLine,Hits\n1,2\n\n45\n\n46\nNode,Busy,Up\n1,2,3\n",
       "Calls 0-2 x1; Total 5-8 no header x1; Line 9-13 x2; Node 15-17 x3 [:46]; "},
      {"\n\n", ""},
  };
  for (const auto& each : cases) {
    for (const std::uint64_t step : {1U, 1000U}) {
      CsvFile file(std::make_unique<MemoryBytes>(each.file));
      while (file.index().index_some(step))
        file.find_tables();
      EXPECT_EQ(tables_of(file), each.tables) << each.file;
    }
  }
}

TEST(CsvTables, AreThereBeforeALongFileIsReadAndGrow) {
  std::string text = "SiteName,A\nLine,Calls,Busy\n1,2,3\n\nNode,Hits\n";
  for (int i = 0; i < 500; ++i)
    text += "M1,2\n";
  CsvFile file(std::make_unique<MemoryBytes>(text));
  file.index().index_some(1000);
  EXPECT_EQ(tables_of(file),
            "Line 1-3 x3; Node 4-" + std::to_string(file.index().row_count()) + " x2; [SiteName:A]");

  std::string many;
  for (std::uint32_t i = 0; i < CsvIndex::kMaxBlocks + 10; ++i)
    many += "A,B\n1,2\n\n";
  CsvFile bounded(std::make_unique<MemoryBytes>(many));
  bounded.index().index_all();
  bounded.find_tables();
  EXPECT_EQ(bounded.tables().size(), CsvIndex::kMaxBlocks);
  EXPECT_EQ(bounded.tables().back().rows.end, bounded.index().row_count());
  EXPECT_TRUE(bounded.index().blocks_left_out());
  EXPECT_EQ(bounded.tables().back().name, "A, B (1024)");
}

TEST(CsvTables, DamagedRowsAreToldByTheirLines) {
  const std::string huge(2 * CsvIndex::kRowLimit, 'x');
  const struct {
    std::string file;
    std::vector<DamagedRow> damaged;
  } cases[] = {
      {"a,b\n\"two\r\nlines\",1\n\"odd\" one,2\n", {}},
      {"a,\"b\r\nc\nd\re\"\n1,\"2\n3,4\n", {{.row = 1, .line = 5, .unclosed = true}}},
      {"a\n1,\"b\n2,\"c\",d\n3\n", {{.row = 1, .line = 2, .joined = true}}},
      {"a\n" + huge + "\nb\n", {{.row = 1, .line = 2, .too_long = true}}},
      {"a\n\"" + huge, {{.row = 1, .line = 2, .unclosed = true, .too_long = true}}},
  };
  for (const auto& each : cases) {
    for (const std::uint64_t step : {3U << 18U, 1U << 24U}) {
      CsvFile file(std::make_unique<MemoryBytes>(each.file));
      while (file.index().index_some(step)) {
      }
      EXPECT_EQ(file.index().damaged_rows(), each.damaged) << each.file.substr(0, 40);
      EXPECT_EQ(file.index().damaged_row_count(), each.damaged.size());
    }
  }
  std::string all;
  for (int i = 0; i < 100; ++i)
    all += "\"a\n\"b\n";
  CsvFile file(std::make_unique<MemoryBytes>(all));
  file.index().index_all();
  EXPECT_EQ(file.index().damaged_row_count(), 100U);
  EXPECT_EQ(file.index().damaged_rows().size(), CsvIndex::kKeptDamagedRows);
  EXPECT_EQ(file.index().damaged_rows().back().line, 39U);
}

constexpr FindDirection kNext = FindDirection::kForward;
constexpr FindDirection kPrevious = FindDirection::kBackward;

// Lines of the table in file order (row 0 is the header):
//   0  Lobby,busy,x        1  caf\xE9,"say ""hi""",BUSY        2  lobby
const std::string kFile = "a,b,c\nLobby,busy,x\ncaf\xE9,\"say \"\"hi\"\"\",BUSY\nlobby\n";

TEST(CsvFind, GoesRoundTheTableOnce) {
  const struct {
    const char* text;
    CellPlace from;
    FindDirection direction;
    std::optional<CellPlace> found;
  } cases[] = {
      {"lobby", {2, 0}, kNext, CellPlace{0, 0}},
      {"LOBBY", {0, 0}, kPrevious, CellPlace{2, 0}},
      {"busy", {0, 0}, kNext, CellPlace{0, 1}},
      {"busy", {0, 1}, kNext, CellPlace{1, 2}},
      {"busy", {1, 2}, kPrevious, CellPlace{0, 1}},
      {"x", {0, 2}, kNext, CellPlace{0, 2}},  // the starting cell comes last
      {"x", {0, 2}, kPrevious, CellPlace{0, 2}},
      {"y \"H", {0, 0}, kNext, CellPlace{1, 1}},
      {"CAF\xC3\x89", {2, 0}, kNext, CellPlace{1, 0}},
      {"lobby", {1, 9}, kPrevious, CellPlace{0, 0}},
      {"nowhere", {1, 1}, kNext, std::nullopt},
  };
  for (const auto& each : cases) {
    CsvFile file(std::make_unique<doubles::MemoryBytes>(kFile));
    file.index().index_all();
    const RowOrder order{1, 3};
    FindTask task(file, order, each.text, each.from, each.direction);
    while (task.step(1)) {
    }
    EXPECT_EQ(task.found(), each.found) << each.text << " from " << each.from.line << "," << each.from.column;
  }
}

TEST(CsvFind, FollowsTheShownOrder) {
  CsvFile file(std::make_unique<doubles::MemoryBytes>("n\n1 x\n2 x\n3\n"));
  file.index().index_all();
  const RowOrder order{1, 3, {3, 2, 1}};
  FindTask task(file, order, "x", {0, 0}, kNext);
  EXPECT_FALSE(task.step(10));
  EXPECT_EQ(task.found(), (CellPlace{1, 0}));
}

Rows sorted(const std::string& text, std::uint32_t first, std::uint32_t column, SortDirection direction,
            std::uint32_t step) {
  CsvFile file(std::make_unique<doubles::MemoryBytes>(text));
  file.index().index_all();
  SortTask task(file, {first, file.index().row_count()}, column, direction);
  while (task.step(step)) {
  }
  return task.take_order().sorted;
}

TEST(CsvSort, PutsNumbersBeforeTextsAndEmptyCellsLast) {
  // row 0 is the header; 7 has no second cell at all
  const std::string text = "h,h\n0,pear\n1,10\n2,\n3,9\n4,Apple\n5,9.0\n6,apple\n7\n8,\xC3\x84pfel\n9,1a\n";
  const std::string alike = "in common b\nin common a\nin common c\nin common a\nin common c\nin common b\n";
  for (const std::uint32_t step : {1U, 3U, 100U}) {
    EXPECT_EQ(sorted(text, 1, 1, SortDirection::kAscending, step), Rows({4, 6, 2, 10, 5, 7, 1, 9, 3, 8}));
    EXPECT_EQ(sorted(text, 1, 1, SortDirection::kDescending, step), Rows({2, 4, 6, 9, 1, 5, 7, 10, 3, 8}));
    EXPECT_EQ(sorted(alike, 0, 0, SortDirection::kAscending, step), Rows({1, 3, 0, 5, 2, 4}));
  }
  EXPECT_EQ(sorted("h\n", 1, 0, SortDirection::kAscending, 1), Rows());
  EXPECT_EQ(sorted("h\n", 5, 0, SortDirection::kAscending, 1), Rows());
}

const struct {
  const char* name;
  std::string text;
  Records records;
} kRecordCases[] = {
    {"empty file", "", {}},
    {"byte order mark alone", "\xEF\xBB\xBF", {}},
    {"byte order mark",
     "\xEF\xBB\xBF"
     "a,b\n",
     {{"a", "b"}}},
    {"no line end at the end", "a,b", {{"a", "b"}}},
    {"separator at the end", "a,", {{"a", ""}}},
    {"every line end", "a\r\nb\nc\rd", {{"a"}, {"b"}, {"c"}, {"d"}}},
    {"empty lines", "\n\r\na\n", {{""}, {""}, {"a"}}},
    {"ragged", "a\nb,c,d\n,\n", {{"a"}, {"b", "c", "d"}, {"", ""}}},
    {"quotes", "\"a,b\",\"c\"\"d\"\n", {{"a,b", "c\"d"}}},
    {"line breaks in quotes", "\"a\r\nb\",\"c\nd\"\r\n", {{"a\r\nb", "c\nd"}}},
    {"quote inside a plain field", "a\"b,c\n", {{"a\"b", "c"}}},
    {"text behind a closing quote", "\"a\"b\"c,d\n", {{"ab\"c", "d"}}},
    {"empty quotes", "\"\",\"\"\n", {{"", ""}}},
    {"unclosed quote", "a,\"b\nc,d", {{"a", "b\nc,d"}}},
    {"quote as the last byte", "a,\"", {{"a", ""}}},
    {"NUL and high bytes", "a\0b,\xE9\n"s, {{"a\0b"s, "\xE9"}}},
};

TEST(CsvRecords, ReadsEveryForm) {
  for (const auto& each : kRecordCases)
    EXPECT_EQ(parse_csv(each.text), each.records) << each.name;
}

TEST(CsvRecords, WritesWhatItReads) {
  const Records records = {{"plain", " blank ", "a,b", "say \"x\"", "two\r\nlines", ""}, {""}, {"", ""}};
  std::string text;
  for (const Record& record : records)
    text += csv_line(record);
  EXPECT_EQ(text, "plain,\" blank \",\"a,b\",\"say \"\"x\"\"\",\"two\r\nlines\",\r\n\"\"\r\n,\r\n");
  EXPECT_EQ(parse_csv(text), records);
}

TEST(CsvText, LosesNoByte) {
  EXPECT_EQ(to_utf8("caf\xC3\xA9"), "caf\xC3\xA9");
  EXPECT_EQ(to_utf8("caf\xE9 \x80"), "caf\xC3\xA9 \xE2\x82\xAC");
  // A single bad byte makes the whole cell Windows-1252.
  EXPECT_EQ(to_utf8("\xC3\xA9\xFF"), "\xC3\x83\xC2\xA9\xC3\xBF");
  std::string previous;
  for (int byte = 0x80; byte < 0x100; ++byte) {
    const std::string text = to_utf8(std::string(1, static_cast<char>(byte)));
    EXPECT_GE(text.size(), 2U) << byte;
    EXPECT_NE(text, previous) << byte;
    previous = text;
  }
}

TEST(CsvText, FoldsCapitals) {
  EXPECT_EQ(fold_case("MSG12 \xC3\x84\xC3\x97\xC3\x9F"), "msg12 \xC3\xA4\xC3\x97\xC3\x9F");      // Ä × ß
  EXPECT_EQ(fold_case("\xC5\xA0\xC5\xA1\xC5\xBD\xC5\xB8"), "\xC5\xA1\xC5\xA1\xC5\xBE\xC3\xBF");  // Š š Ž Ÿ
  EXPECT_EQ(fold_case("\xCE\xA3\xD0\x96\xD0\x81"), "\xCF\x83\xD0\xB6\xD1\x91");                  // Σ Ж Ё
  EXPECT_EQ(fold_case("\xE2\x82\xAC\xC3"), "\xE2\x82\xAC\xC3");  // € and half a character
}

TEST(CsvText, KnowsNumbers) {
  EXPECT_EQ(to_number(" -12.5 "), -12.5);
  EXPECT_EQ(to_number("+3e2"), 300);
  EXPECT_EQ(to_number(".5"), 0.5);
  for (const char* text : {"", " ", "-", "+-1", "1a", "inf", "nan", "0x10", "1,5", "1e999", "00:12:33"})
    EXPECT_FALSE(to_number(text)) << text;
}

}  // namespace
}  // namespace qvrcom::csv
