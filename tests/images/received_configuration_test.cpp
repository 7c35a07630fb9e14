#include "images/decoding.h"

#include <gmock/gmock.h>

#include "doubles/bar_rows.h"
#include "doubles/message_printer.h"
#include "doubles/recording_components.h"
#include "doubles/recording_user_interface.h"

namespace qvrcom::images {
namespace {

using testing::ElementsAre;

struct Parts {
  Parts() {
    ui.on_pump = [this] { components.events.push_back("pump"); };
    components.answers["Get_Partition_Rows"] = "PartitionID|7";
    site.SiteID = "17";
    run.SessionConfigID = "1000";
    received.ReceivedPartitions = {"3", "", "5", ""};
  }

  doubles::RecordingUserInterface ui;
  doubles::RecordingComponents components;
  doubles::BarRows xml;
  base::SiteValues site;
  base::RunValues run;
  base::ReceivedValues received;
  ReceivedConfiguration configuration{{site, run, received, components, xml, ui}};
};

TEST(ReceivedConfiguration, DecodesTheSystemImage) {
  Parts parts;
  parts.configuration.Write_Database("S:\\getdBasePx\\getdBaseSys.dat");
  EXPECT_THAT(parts.components.events,
              ElementsAre("create QVRBIN7_2.Sys", "pump",
                          "DecodeSystemImage 1000|S:\\getdBasePx\\getdBaseSys.dat", "release QVRBIN7_2.Sys"));
  EXPECT_THAT(parts.received.ReceivedPartitions, ElementsAre("3"));
  for (const std::optional<std::string>& answer : {std::optional<std::string>("OK "), {}}) {
    parts.components.answers["DecodeSystemImage"] = answer;
    parts.configuration.Process_System_binary("1", "S:\\x");
    EXPECT_EQ(parts.ui.messages.back(), platform::Message{answer.value_or("")});
  }
  EXPECT_EQ(parts.ui.messages.size(), 2U);
}

TEST(ReceivedConfiguration, DecodesThePartitionsThatExist) {
  Parts parts;
  parts.configuration.Write_Database("S:\\getdBaseP7.dat");
  EXPECT_THAT(parts.components.events,
              ElementsAre("create QVRdb.Config", "Get_Partition_Rows 1000|7", "release QVRdb.Config",
                          "create QVRBIN7_2.Part", "DecodePartitionImage 1000|7|17|S:\\getdBaseP7.dat",
                          "release QVRBIN7_2.Part"));
  EXPECT_THAT(parts.received.ReceivedPartitions, ElementsAre("7", ""));
  parts.configuration.Write_Database("S:\\getdBaseP12.dat");
  EXPECT_THAT(parts.received.ReceivedPartitions, ElementsAre("7", "12", ""));
  parts.components.answers["DecodePartitionImage"] = "Cut short";
  parts.configuration.Write_Database("S:\\getdBaseP64.dat");
  EXPECT_THAT(parts.received.ReceivedPartitions, ElementsAre("7", "", "64", ""));
  EXPECT_THAT(parts.ui.messages, ElementsAre(platform::Message{"Cut short"}));
  parts.configuration.clear_received_partitions();
  EXPECT_THAT(parts.received.ReceivedPartitions, ElementsAre(""));
  EXPECT_EQ(parts.received.PartitionCount, 0U);
}

TEST(ReceivedConfiguration, LooksUpWhatTheNameSays) {
  const std::pair<const char*, const char*> rows[] = {{"S:\\GETDBASESYS.DAT", ""},
                                                      {"S:\\getdBaseP.dat", ""},
                                                      {"S:\\getdBaseP64abcd", "64"},
                                                      {"getdBaseP1\\getdBaseP2.dat", "1\\getdBaseP2"}};
  for (const auto& [file, partition] : rows) {
    Parts parts;
    parts.components.answers["Get_Partition_Rows"] = "none";
    parts.configuration.Write_Database(file);
    ASSERT_EQ(parts.components.events.size(), 3U) << file;
    EXPECT_EQ(parts.components.events[1], "Get_Partition_Rows 1000|" + std::string(partition));
    EXPECT_THAT(parts.received.ReceivedPartitions, ElementsAre("3"));
  }
}

TEST(ReceivedConfiguration, AnAnswerThatIsNullIsAFault) {
  Parts parts;
  parts.components.answers["Get_Partition_Rows"] = std::nullopt;
  EXPECT_FALSE(parts.configuration.ExistPartID("7"));
  EXPECT_THAT(parts.ui.texts(), ElementsAre("Error_Handler: ExistPartID\r\nInvalid use of Null"));
}

}  // namespace
}  // namespace qvrcom::images
