#include "images/statistics_files.h"

#include <gtest/gtest.h>

#include "doubles/memory_data.h"

namespace qvrcom::images {
namespace {

const std::string kStats = "C:\\Docs\\Corbelin\\QVRCOM+\\Stats\\";

struct Parts : doubles::MemoryData {
  Parts() {
    machine.special_folders = {{35, "C:\\Data"}, {46, "C:\\Docs"}};
    files.make_folders(kStats);
    files.folders.insert("D:");
  }

  StatisticsFiles statistics{folders, files, ui};
};

TEST(StatisticsFiles, TakesPathNameAndNumberingFromTheSettings) {
  const struct {
    std::vector<std::vector<base::Field>> rows;  // path, name, numbering
    std::string result;
  } cases[] = {{{{std::nullopt, "", "2"}}, kStats + "Stats.csv"},
               {{{"", std::nullopt, ""}}, kStats + "Stats1.csv"},
               {{{"D:\\", "Calls.csv", "1"}}, "D:\\Calls1.csv"},
               {{{"D:\\", "A.csv", "1"}, {std::nullopt, "B.csv", "2"}}, kStats + "B.csv"}};

  for (const auto& each : cases) {
    Parts parts;
    parts.engine.answer("File_Handling", {"DefaultPathname", "DefaultFilename", "AutoIncrements"}, each.rows);
    EXPECT_EQ(parts.statistics.Get_Stats_FileName("17", parts.dbase), each.result);
    EXPECT_EQ(parts.engine.statements.at(0).values[0].value, "17");
    EXPECT_EQ(parts.engine.statements[0].values[1].value, "Statistics");
  }
}

TEST(StatisticsFiles, FindsTheNextNumber) {
  const struct {
    std::vector<std::string> held;
    const char *name, *next;
  } cases[] = {
      {{"Stats1.csv", "Stats7.csv", "StatsX.csv", "Stats.csv"}, "Stats.csv", "Stats8.csv"},
      {{"sTATS9.CSV", "Stats12.txt", "Stat20.csv", "Stats4.csv.bak"}, "Stats.csv", "Stats10.csv"},
      {{"Stats1.5.csv", "Stats-7.csv"}, "Stats.csv", "Stats3.csv"},
      {{"Stats +1e2 .csv", "Stats1e.csv", "Stats0x99.csv", "Statsinf.csv"}, "Stats.csv", "Stats101.csv"},
      {{"Stats2147483648.csv", "Stats1e999.csv", "Stats3 4.csv", "Stats+-5.csv"}, "Stats.csv", "Stats1.csv"},
      {{"4.csv", "x.csv"}, "csv", "5.csv"},
      {{"Stats2147483647.csv"}, "Stats.csv", ""}};
  for (const auto& each : cases) {
    Parts parts;
    for (const std::string& name : each.held)
      parts.files.content["D:\\" + name] = "";
    EXPECT_EQ(parts.statistics.Next_AutoIncrement_FileName("D:\\", each.name),
              *each.next == '\0' ? "" : "D:\\" + std::string(each.next));
    EXPECT_EQ(parts.ui.messages.empty(), *each.next != '\0');
  }
}

}  // namespace
}  // namespace qvrcom::images
