#include "images/statistics_decoding.h"

#include <gmock/gmock.h>

#include "doubles/message_printer.h"
#include "doubles/recording_components.h"
#include "doubles/recording_user_interface.h"

namespace qvrcom::images {
namespace {

using platform::Icon;
using testing::ElementsAre;
using testing::ElementsAreArray;

struct Parts {
  Parts() {
    ui.on_pump = [this] { components.events.push_back("pump"); };
    run.StatsResultFile = "before";
  }

  doubles::RecordingUserInterface ui;
  doubles::RecordingComponents components;
  base::RunValues run;
  StatisticsDecoding decoding{run, components, ui};
};

TEST(StatisticsDecoding, DecodesBothFilesBeforeItLooksAtTheAnswers) {
  using Boxes = std::vector<platform::Message>;
  const struct {
    std::optional<std::string> lines, nodes;
    Boxes boxes;
  } rows[] = {
      {"OK", "OK", {}},
      {"No magic", "OK", {{"No magic"}}},
      {"No magic", "Cut short", {{"No magic"}}},
      {"OK", "Cut short", {{"Cut short"}}},
      {std::nullopt, "Cut short", {{""}}},
      {"OK", std::nullopt, {{""}}},
      {"OKAY", "OK", {{"OKAY"}}},
      {"OK", "Ok", {{"Ok"}}},
  };
  for (const auto& row : rows) {
    Parts parts;
    parts.components.answers = {{"DecodeLineStats", row.lines}, {"DecodeNodeStats", row.nodes}};
    parts.decoding.Process_PartStats_binary("1", "3", "lines", "nodes");
    EXPECT_THAT(parts.components.events,
                ElementsAre("create QVRBIN7_2.Part", "pump", "DecodeLineStats 1|3|lines",
                            "DecodeNodeStats 1|3|nodes", "release QVRBIN7_2.Part"));
    EXPECT_THAT(parts.ui.messages, ElementsAreArray(row.boxes));
    EXPECT_EQ(parts.run.StatsResultFile, "before");
  }
}

TEST(StatisticsDecoding, TakesTheNameOfTheCsvFromTheAnswer) {
  const struct {
    std::optional<std::string> answer;
    const char* file;
    const char* box;  // nullptr: none
  } rows[] = {{"OKC:\\Stats\\Stats1.csv", "C:\\Stats\\Stats1.csv", nullptr},
              {"OK", "", nullptr},
              {"okC:\\Stats1.csv", "before", "okC:\\Stats1.csv"},
              {" OKC:\\x", "before", " OKC:\\x"},
              {"", "before", ""},
              {std::nullopt, "before", ""}};
  for (const auto& row : rows) {
    Parts parts;
    parts.components.answers["WriteStatsCsv"] = row.answer;
    parts.decoding.Process_Write_CSV("1", "3");
    EXPECT_THAT(parts.components.events,
                ElementsAre("create QVRStats.Stats", "pump", "WriteStatsCsv 1|3", "release QVRStats.Stats"));
    EXPECT_EQ(parts.run.StatsResultFile, row.file);
    ASSERT_EQ(parts.ui.messages.size(), row.box == nullptr ? 0U : 1U);
    if (row.box != nullptr) {
      EXPECT_EQ(parts.ui.messages[0], (platform::Message{row.box, "QVRCOM+", Icon::kError}));
    }
  }
}

TEST(StatisticsDecoding, ReportsComponentsThatAreNotThere) {
  Parts parts;
  parts.components.unknown = {"QVRBIN7_2.Part", "QVRStats.Stats"};
  parts.decoding.Process_PartStats_binary("1", "3", "lines", "nodes");
  parts.decoding.Process_Write_CSV("1", "3");
  const std::string fault = "\r\nComponent cannot be created";
  EXPECT_THAT(
      parts.ui.messages,
      ElementsAre(
          platform::Message{"Error_Handler: Process_PartStats_binary" + fault, "QVRCOM+", Icon::kError},
          platform::Message{"Error_Handler: Process_Write_CSV" + fault, "QVRCOM+", Icon::kError}));
  EXPECT_EQ(parts.run.StatsResultFile, "before");
}

}  // namespace
}  // namespace qvrcom::images
