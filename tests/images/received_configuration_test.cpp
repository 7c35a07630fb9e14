#include "images/received_configuration.h"

#include <gmock/gmock.h>

#include "doubles/message_printer.h"
#include "doubles/recording_components.h"
#include "doubles/recording_user_interface.h"

namespace qvrcom::images {
namespace {

using platform::Icon;
using testing::ElementsAre;
using testing::IsEmpty;

// One row for every answer but "none"; a damaged table is a fault.
struct CountingRows : platform::XmlRows {
  base::Rows load(std::string_view xml) const override {
    if (xml == "damaged") throw base::Fault("Not a table", "damaged");
    base::Rows rows({"PartitionID"});
    if (xml != "none") rows.add({std::string("7")});
    return rows;
  }
};

struct Parts {
  Parts() {
    site.SiteID = "17";
    run.SessionConfigID = "1000";
    ui.on_pump = [this] { components.events.push_back("pump"); };
  }

  // The database has no partition, this text being its answer.
  Parts& lookup(std::optional<std::string> answer) {
    components.answers["Get_Partition_Rows"] = std::move(answer);
    return *this;
  }

  doubles::RecordingUserInterface ui;
  doubles::RecordingComponents components;
  CountingRows xml;
  base::SiteValues site;
  base::RunValues run;
  base::ReceivedValues received;
  ReceivedConfiguration configuration{{site, run, received, components, xml, ui}};
};

TEST(ReceivedConfiguration, DecodesTheSystemImage) {
  Parts parts;
  parts.received.ReceivedPartitions = {"3", "", "5", ""};
  parts.configuration.Write_Database("S:\\getdBasePx\\getdBaseSys.dat");
  EXPECT_THAT(parts.components.events,
              ElementsAre("create QVRBIN7_2.Sys", "pump",
                          "DecodeSystemImage 1000|S:\\getdBasePx\\getdBaseSys.dat", "release QVRBIN7_2.Sys"));
  EXPECT_THAT(parts.received.ReceivedPartitions, ElementsAre("3"));
  EXPECT_THAT(parts.ui.messages, IsEmpty());
}

TEST(ReceivedConfiguration, DecodesThePartitionsThatExist) {
  Parts parts;
  parts.configuration.Write_Database("S:\\getdBaseP7.dat");
  EXPECT_THAT(parts.components.events,
              ElementsAre("create QVRdb.Config", "Get_Partition_Rows 1000|7", "release QVRdb.Config",
                          "create QVRBIN7_2.Part", "DecodePartitionImage 1000|7|17|S:\\getdBaseP7.dat",
                          "release QVRBIN7_2.Part"));
  EXPECT_THAT(parts.received.ReceivedPartitions, ElementsAre("7", ""));
  EXPECT_EQ(parts.received.PartitionCount, 1U);
  parts.configuration.Write_Database("S:\\getdBaseP12.dat");
  EXPECT_THAT(parts.received.ReceivedPartitions, ElementsAre("7", "12", ""));
  parts.components.answers["DecodePartitionImage"] = "Cut short";
  parts.configuration.Write_Database("S:\\getdBaseP64.dat");
  EXPECT_THAT(parts.received.ReceivedPartitions, ElementsAre("7", "", "64", ""));
  EXPECT_EQ(parts.received.PartitionCount, 3U);
  EXPECT_THAT(parts.ui.messages, ElementsAre(platform::Message{"Cut short"}));

  parts.configuration.clear_received_partitions();
  EXPECT_THAT(parts.received.ReceivedPartitions, ElementsAre(""));
  EXPECT_EQ(parts.received.PartitionCount, 0U);
}

TEST(ReceivedConfiguration, LooksUpWhatTheNameSays) {
  const struct {
    const char *file, *partition;
  } rows[] = {{"S:\\getdBaseP7.dat", "7"},
              {"S:\\GETDBASESYS.DAT", ""},
              {"S:\\getdbasesys.dat", ""},
              {"S:\\getdBaseP.dat", ""},
              {"S:\\getdBaseP64abcd", "64"},
              {"getdBaseP1\\getdBaseP2.dat", "1\\getdBaseP2"},
              {"", ""}};
  for (const auto& row : rows) {
    Parts parts;
    parts.lookup("none").received.ReceivedPartitions = {"3", "", "5", ""};
    parts.configuration.Write_Database(row.file);
    EXPECT_THAT(parts.components.events,
                ElementsAre("create QVRdb.Config", "Get_Partition_Rows 1000|" + std::string(row.partition),
                            "release QVRdb.Config"))
        << row.file;
    EXPECT_THAT(parts.received.ReceivedPartitions, ElementsAre("3"));
    EXPECT_EQ(parts.received.PartitionCount, 0U);
    EXPECT_THAT(parts.ui.messages, IsEmpty());
  }
}

TEST(ReceivedConfiguration, ReportsEachFaultUnderItsProcedure) {
  Parts parts;
  parts.configuration.Write_Database("S:\\getdBaseP1");
  for (const std::optional<std::string>& answer : {std::optional<std::string>("damaged"), {}})
    EXPECT_FALSE(parts.lookup(answer).configuration.ExistPartID("7"));
  EXPECT_THAT(parts.received.ReceivedPartitions, ElementsAre(""));
  parts.components.unknown = {"QVRBIN7_2.Sys", "QVRBIN7_2.Part"};
  parts.lookup("rows").configuration.Write_Database("S:\\getdBaseP7.dat");
  EXPECT_THAT(parts.received.ReceivedPartitions, ElementsAre("7", ""));
  parts.configuration.Write_Database("S:\\getdBaseSys.dat");
  EXPECT_THAT(parts.ui.texts(),
              ElementsAre("Error_Handler: Write_Database\r\nInvalid procedure call or argument",
                          "Error_Handler: ExistPartID\r\nNot a table",
                          "Error_Handler: ExistPartID\r\nInvalid use of Null",
                          "Error_Handler: Process_Partition_binary\r\nComponent cannot be created",
                          "Error_Handler: Process_System_binary\r\nComponent cannot be created"));
  for (const platform::Message& box : parts.ui.messages) {
    EXPECT_EQ(box.icon, Icon::kError);
    EXPECT_EQ(box.title, "QVRCOM+");
  }
}

TEST(ReceivedConfiguration, ShowsTheAnswerOfTheSystemImageAsItStands) {
  for (const std::optional<std::string>& answer : {std::optional<std::string>("OK "), {}}) {
    Parts parts;
    parts.components.answers["DecodeSystemImage"] = answer;
    parts.configuration.Process_System_binary("1", "S:\\x");
    EXPECT_THAT(parts.ui.messages, ElementsAre(platform::Message{answer.value_or("")}));
  }
}

}  // namespace
}  // namespace qvrcom::images
