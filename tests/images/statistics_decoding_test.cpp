#include "images/decoding.h"

#include <gmock/gmock.h>

#include "doubles/message_printer.h"
#include "doubles/recording_components.h"
#include "doubles/recording_user_interface.h"

namespace qvrcom::images {
namespace {

using testing::ElementsAre;

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
    Parts parts;
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
    Parts parts;
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
