#include <gmock/gmock.h>

#include "doubles/memory_data.h"
#include "doubles/message_printer.h"
#include "doubles/recording_components.h"
#include "doubles/recording_user_interface.h"
#include "images/decoding.h"
#include "images/statistics_files.h"

namespace qvrcom::images {
namespace {

using testing::ElementsAre;

const std::string kStats = "C:\\Docs\\Corbelin\\QVRCOM+\\Stats\\";

struct FileParts : doubles::MemoryData {
  FileParts() {
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
    FileParts parts;
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
    FileParts parts;
    for (const std::string& name : each.held)
      parts.files.content["D:\\" + name] = "";
    EXPECT_EQ(parts.statistics.Next_AutoIncrement_FileName("D:\\", each.name),
              *each.next == '\0' ? "" : "D:\\" + std::string(each.next));
    EXPECT_EQ(parts.ui.messages.empty(), *each.next != '\0');
  }
}

struct DecodingParts {
  DecodingParts() {
    ui.on_pump = [this] { components.events.push_back("pump"); };
    run.StatsResultFile = "before";
  }

  doubles::RecordingUserInterface ui;
  doubles::RecordingComponents components;
  base::RunValues run;
  StatisticsDecoding decoding{run, components, ui};
};

TEST(StatisticsDecoding, DecodesBothFilesBeforeItLooksAtTheAnswers) {
  const struct {
    std::optional<std::string> lines, nodes;
    std::vector<platform::Message> boxes;
  } rows[] = {
      {"OK", "OK", {}},
      {"No magic", "Cut short", {{"No magic"}}},
      {"OK", "Cut short", {{"Cut short"}}},
      {std::nullopt, "Cut short", {{""}}},
      {"OKAY", "OK", {{"OKAY"}}},
  };
  for (const auto& row : rows) {
    DecodingParts parts;
    parts.components.answers = {{"DecodeLineStats", row.lines}, {"DecodeNodeStats", row.nodes}};
    const auto answers = parts.decoding.Process_PartStats_binary("1", "3", "lines", "nodes");
    EXPECT_EQ(answers.lines && answers.nodes, row.boxes.empty());
    EXPECT_THAT(parts.components.events,
                ElementsAre("create QVRBIN7_2.Part", "pump", "DecodeLineStats 1|3|lines",
                            "DecodeNodeStats 1|3|nodes", "release QVRBIN7_2.Part"));
    EXPECT_EQ(parts.ui.messages, row.boxes);
  }
}

TEST(StatisticsDecoding, TakesTheNameOfTheCsvFromTheAnswer) {
  const struct {
    std::optional<std::string> answer;
    const char* file;
  } rows[] = {{"OKC:\\Stats\\Stats1.csv", "C:\\Stats\\Stats1.csv"},
              {"OK", ""},
              {"okC:\\Stats1.csv", "before"},
              {std::nullopt, "before"}};
  for (const auto& row : rows) {
    DecodingParts parts;
    parts.components.answers["WriteStatsCsv"] = row.answer;
    parts.decoding.Process_Write_CSV("1", "3");
    EXPECT_THAT(parts.components.events,
                ElementsAre("create QVRStats.Stats", "pump", "WriteStatsCsv 1|3", "release QVRStats.Stats"));
    EXPECT_EQ(parts.run.StatsResultFile, row.file);
    if (row.file != std::string("before")) continue;
    EXPECT_THAT(parts.ui.messages,
                ElementsAre(platform::Message{row.answer.value_or(""), "QVRCOM+", platform::Icon::kError}));
  }
}

}  // namespace
}  // namespace qvrcom::images
