#include "csv/csv_file.h"

#include <gmock/gmock.h>

#include "csv/csv_records.h"
#include "doubles/memory_bytes.h"

namespace qvrcom::csv {
namespace {

using namespace std::string_literals;
using doubles::MemoryBytes;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

CsvFile file_of(std::string text) {
  return CsvFile(std::make_unique<MemoryBytes>(std::move(text)));
}

std::vector<Record> rows_of(CsvFile& file) {
  std::vector<Record> rows;
  for (std::uint32_t row = 0; row < file.index().row_count(); ++row) {
    rows.emplace_back();
    for (std::uint32_t i = 0; i < file.row(row).size(); ++i)
      rows.back().emplace_back(file.row(row)[i]);
  }
  return rows;
}

TEST(CsvFile, HasTheRowsOfTheParserHoweverItIsIndexed) {
  const std::string texts[] = {"",
                               "\xEF\xBB\xBF",
                               "\xEF\xBB\xBF"
                               "a,b\r\nc\r\n",
                               "a\r\n\"b\r\nc\",d\r\n\r\ne",
                               "a\rb\r\rc,,\n\n",
                               "x,\"unclosed\n1,2\n"s,
                               "\"\"\"\",\"a\"b\0\n"s};
  for (const std::string& text : texts) {
    for (const std::uint64_t step : {1U, 2U, 5U, 1000U}) {
      CsvFile file = file_of(text);
      std::size_t columns = 0;
      while (file.index().index_some(step))
        rows_of(file);
      const std::vector<Record> expected = parse_csv(text);
      for (const Record& record : expected)
        columns = std::max(columns, record.size());
      EXPECT_EQ(rows_of(file), expected) << testing::PrintToString(text) << " in steps of " << step;
      EXPECT_EQ(file.index().column_count(), columns);
      EXPECT_EQ(file.index().damaged_row_count(), text.find("unclosed") != std::string::npos ? 1U : 0U);
    }
  }
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
  EXPECT_THAT(rows_of(cut), ElementsAre(ElementsAre("a", "b"), ElementsAre("c", "d")));

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
      {"a,b,c\nd,e\n", {}, 0},         // the wide row comes first
      {"\na,b\nc,d,e\n", {}, 0},       // an empty line at the start
      {"a,b\nalone\nc,d,e\n", {}, 0},  // a row that is neither
      {"", {}, 0},
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

}  // namespace
}  // namespace qvrcom::csv
