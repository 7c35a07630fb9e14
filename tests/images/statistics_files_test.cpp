#include "images/statistics_files.h"

#include <gmock/gmock.h>

#include "doubles/memory_database.h"
#include "doubles/memory_files.h"
#include "doubles/memory_machine.h"
#include "doubles/recording_user_interface.h"

namespace qvrcom::images {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kStats = "C:\\Docs\\Corbelin\\QVRCOM+\\Stats\\";

struct Parts {
  Parts() {
    machine.special_folders = {{35, "C:\\Data"}, {46, "C:\\Docs"}};
    files.make_folders(kStats);
    files.folders.insert("D:");
  }

  doubles::MemoryMachine machine;
  doubles::MemoryFiles files;
  doubles::RecordingUserInterface ui;
  doubles::MemoryDatabase engine;
  environment::FilesAndFolders folders{machine, files};
  environment::DatabaseConnection connection{engine, folders};
  StatisticsFiles statistics{folders, files, ui};
};

TEST(StatisticsFiles, TakesPathNameAndNumberingFromTheSettings) {
  const struct {
    std::vector<std::vector<base::Field>> rows;  // path, name, numbering
    std::string result;
  } cases[] = {{{{std::nullopt, "", "2"}}, kStats + "Stats.csv"},
               {{{"", std::nullopt, ""}}, kStats + "Stats1.csv"},
               {{{"D:\\", "Calls.csv", "1"}}, "D:\\Calls1.csv"},
               {{{"D:\\", "A.csv", "1"}, {std::nullopt, "B.csv", "2"}}, kStats + "B.csv"},
               {{{std::nullopt, std::nullopt, std::nullopt}}, kStats + "Stats1.csv"}};
  for (const auto& each : cases) {
    Parts parts;
    environment::DBase database(parts.connection);
    parts.engine.answer("File_Handling", {"DefaultPathname", "DefaultFilename", "AutoIncrements"}, each.rows);
    EXPECT_EQ(parts.statistics.Get_Stats_FileName("17", database), each.result);
    ASSERT_EQ(parts.engine.statements.size(), 1U);
    EXPECT_EQ(parts.engine.statements[0].values[0].value, "17");
    EXPECT_EQ(parts.engine.statements[0].values[1].value, "Statistics");
    EXPECT_THAT(parts.ui.messages, IsEmpty());
  }
}

TEST(StatisticsFiles, FindsTheNextNumber) {
  const struct {
    std::vector<std::string> held;
    const char *name, *next;
  } cases[] = {
      {{}, "Stats.csv", "Stats1.csv"},
      {{"Stats1.csv", "Stats7.csv", "StatsX.csv", "Stats.csv"}, "Stats.csv", "Stats8.csv"},
      {{"sTATS9.CSV", "Stats12.txt", "Stat20.csv", "Stats4.csv.bak"}, "Stats.csv", "Stats10.csv"},
      {{"Stats1.5.csv", "Stats-7.csv"}, "Stats.csv", "Stats3.csv"},
      {{"Stats2.5.csv"}, "Stats.csv", "Stats3.csv"},
      {{"Stats +1e2 .csv", "Stats1e.csv", "Stats0x99.csv", "Statsinf.csv"}, "Stats.csv", "Stats101.csv"},
      {{"Stats2147483648.csv", "Stats1e999.csv", "Stats3 4.csv", "Stats+-5.csv"}, "Stats.csv", "Stats1.csv"},
      {{"4.csv", "x.csv"}, "csv", "5.csv"}};
  for (const auto& each : cases) {
    Parts parts;
    for (const std::string& name : each.held)
      parts.files.content["D:\\" + name] = "";
    EXPECT_EQ(parts.statistics.Next_AutoIncrement_FileName("D:\\", each.name),
              "D:\\" + std::string(each.next));
    EXPECT_THAT(parts.ui.messages, IsEmpty());
  }
}

TEST(StatisticsFiles, ReportsWithTheErrorIcon) {
  Parts parts;
  environment::DBase database(parts.connection);
  parts.engine.refusal = "Database is locked";
  EXPECT_EQ(parts.statistics.Get_Stats_FileName("17", database), "");
  EXPECT_EQ(parts.statistics.Next_AutoIncrement_FileName("E:\\", "Stats.csv"), "");
  parts.files.content["D:\\Stats2147483647.csv"] = "";
  EXPECT_EQ(parts.statistics.Next_AutoIncrement_FileName("D:\\", "Stats.csv"), "");
  EXPECT_THAT(parts.ui.texts(), ElementsAre("Error_Handler: Get_Stats_FileName\r\nDatabase is locked",
                                            "Error_Handler: Next_AutoIncrement_FileName\r\nPath not found",
                                            "Error_Handler: Next_AutoIncrement_FileName\r\nOverflow"));
  EXPECT_EQ(parts.ui.messages[0].icon, platform::Icon::kError);
  EXPECT_EQ(parts.ui.messages[0].title, "QVRCOM+");
}

}  // namespace
}  // namespace qvrcom::images
