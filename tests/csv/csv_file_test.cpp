#include "csv/csv_file.h"

#include <gmock/gmock.h>

#include "doubles/memory_bytes.h"

namespace qvrcom::csv {
namespace {

using doubles::MemoryBytes;

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

}  // namespace
}  // namespace qvrcom::csv
