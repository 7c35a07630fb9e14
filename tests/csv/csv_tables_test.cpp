#include "csv/csv_tables.h"

#include <gmock/gmock.h>

#include "csv/csv_file.h"
#include "doubles/memory_bytes.h"

namespace qvrcom::csv {
namespace {

using doubles::MemoryBytes;

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

}  // namespace
}  // namespace qvrcom::csv
