#include <gmock/gmock.h>

#include "doubles/bar_rows.h"
#include "doubles/memory_data.h"
#include "doubles/memory_files.h"
#include "doubles/message_printer.h"
#include "doubles/recording_components.h"
#include "doubles/recording_user_interface.h"
#include "images/decoding.h"
#include "images/device_records.h"
#include "images/image_downloads.h"
#include "images/node_lists.h"
#include "jobs/job_parts.h"

namespace qvrcom::images {
namespace {

using base::NodeType;
using base::TimeRecord;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

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
  parts.components.answers["Get_Partition_Rows"] = std::nullopt;
  EXPECT_FALSE(parts.configuration.ExistPartID("7"));
  EXPECT_EQ(parts.ui.texts().back(), "Error_Handler: ExistPartID\r\nInvalid use of Null");
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

struct RecordParts {
  doubles::MemoryFiles files;
  doubles::RecordingUserInterface ui;
  base::ReceivedValues received;
  DeviceRecords records{received, files, ui};
};

TEST(DeviceRecords, ConvertsSamplesToMinutesAndSeconds) {
  const struct {
    std::int32_t samples;
    TimeRecord time;
  } rows[] = {{4'000, {"0", "0"}},      {12'000, {"2", "0"}},     {479'999, {"0", "1"}},
              {-488'000, {"-1", "-1"}}, {4'800'000, {"0", "10"}}, {2'147'483'647, {"55", "4473"}}};
  for (const auto& row : rows)
    EXPECT_EQ(DeviceRecords::TIME_CONVERSIONS(row.samples), row.time) << row.samples;
}

TEST(DeviceRecords, ReadsTheTimesOfAPartition) {
  const TimeRecord old{"old", "old"};
  const struct {
    const char* what;
    std::string bytes;
    TimeRecord first, second;
    bool overflows, is_short;
  } rows[] = {
      {"both", {"\0\0\xFA\0\0\1\xF4\0\xFF\xFF", 10}, {"8", "0"}, {"16", "0"}, false, false},
      {"second too large", {"\0\0\xFA\0\xFF\xFF\xFF\xFF", 8}, {"8", "0"}, old, true, false},
      {"cut in the second", {"\0\0\xFA\0\0\1\xF4", 7}, {"8", "0"}, {"16", "0"}, false, true},
      {"cut and too large", {"\0\0\xFA\0\x80", 5}, {"8", "0"}, old, true, true},
  };
  for (const auto& row : rows) {
    RecordParts parts;
    parts.received.PartitionTimes = {old, old};
    parts.received.Shortfall = "of the file before";
    parts.files.content["S:\\msgindex"] = row.bytes;
    parts.records.PARTITION_INFO("S:\\msgindex");
    EXPECT_THAT(parts.received.PartitionTimes, ElementsAre(row.first, row.second)) << row.what;
    const std::string length = "S:\\msgindex holds " + std::to_string(row.bytes.size()) + " of 8 bytes";
    EXPECT_EQ(parts.received.Shortfall.starts_with(length), row.is_short) << row.what;
    EXPECT_EQ(parts.received.Shortfall.empty(), !row.is_short) << row.what;
    ASSERT_EQ(parts.ui.messages.size(), row.overflows ? 1U : 0U) << row.what;
    if (!row.overflows) continue;
    EXPECT_EQ(parts.ui.messages[0], (platform::Message{"Error_Handler: PARTITION_INFO\r\nOverflow", "QVRCOM+",
                                                       platform::Icon::kError}));
    EXPECT_THAT(parts.ui.messages[0].detail, HasSubstr(row.is_short ? length : "S:\\msgindex"));
  }
}

struct ListParts : doubles::MemoryData {
  void nodes(const std::string& word, const std::vector<base::Field>& numbers) {
    std::vector<std::vector<base::Field>> rows;
    for (const base::Field& number : numbers)
      rows.push_back({number});
    engine.answer("FROM Node_" + word + " ", {"NodeNumber"}, rows);
  }
  base::NodeList& list(NodeType type) { return nodes_of.by_type[static_cast<std::size_t>(type)]; }

  base::NodeValues nodes_of;
  NodeLists lists{nodes_of, dbase, ui};
};

TEST(NodeLists, ListsEveryTypeInTheOrderOfTheTypes) {
  ListParts parts;
  std::vector<std::string> all;
  for (const std::string_view word : base::kNodeTypeWords) {
    parts.nodes(std::string(word), {"1", "12"});
    all.insert(all.end(), {std::string(word) + "1", std::string(word) + "12"});
  }
  for (int round = 0; round < 2; ++round)
    parts.lists.Build_Node_Lists("1", "3");
  EXPECT_EQ(parts.nodes_of.all.names, all);
  EXPECT_THAT(parts.list(NodeType::kDir).names, ElementsAre("DIR1", "DIR12"));
  ASSERT_EQ(parts.engine.statements.size(), 32U);
  EXPECT_EQ(parts.engine.statements[31].values[0].value, "1");
  EXPECT_EQ(parts.engine.statements[31].values[1].value, "3");
}

TEST(NodeLists, KeepsTheListOfATypeWithoutNodes) {
  ListParts parts;
  parts.nodes("MSG", {});
  parts.nodes("CMD", {"7", std::nullopt});
  parts.list(NodeType::kMsg) = {{"MSG1"}, true};
  parts.list(NodeType::kCmd) = {{"CMD1", "CMD2", "CMD3"}, false};
  parts.nodes_of.all = {{"before"}, true};
  parts.lists.Get_Node_List(NodeType::kMsg, "1", "3");
  EXPECT_THAT(parts.list(NodeType::kMsg).names, ElementsAre("MSG1"));
  parts.lists.Merge_Node_Lists();
  EXPECT_THAT(parts.nodes_of.all.names, ElementsAre("before"));
  parts.lists.Get_Node_List(NodeType::kCmd, "1", "3");
  parts.lists.Merge_Node_Lists();
  EXPECT_THAT(parts.list(NodeType::kCmd).names, ElementsAre("CMD7", "CMD"));
  EXPECT_THAT(parts.nodes_of.all.names, ElementsAre("CMD7", "CMD"));
}

TEST(NodeLists, CutsTheHeadOffAnEntry) {
  ListParts parts;
  EXPECT_EQ(parts.lists.Head_Info("12-Main-greeting"), "12");
  EXPECT_EQ(parts.lists.Head_Info("-12"), "");
}

TEST(NodeLists, MovesSelectedEntries) {
  ListParts parts;
  ListItems source{{"a", true}, {"b"}, {"c", true}, {"d"}};
  ListItems target{{"z", true}};
  parts.lists.Add_Items(target, source);
  EXPECT_EQ(source, (ListItems{{"b"}, {"d"}}));
  EXPECT_EQ(target, (ListItems{{"z", true}, {"a"}, {"c"}}));
  parts.lists.Remove_Items(target, source);
  EXPECT_EQ(source, (ListItems{{"b"}, {"d"}, {"z"}}));
  EXPECT_EQ(target, (ListItems{{"a"}, {"c"}}));
}

TEST(ImageDownloads, WritesTheLinesOfAPartition) {
  jobs::JobParts parts;
  parts.writer.Create_Dir();
  ImageDownloads(parts.writer).Write_Script_Partition(" 12 ", "F\\getdBaseP12.dat");
  EXPECT_EQ(parts.file(parts.session.job.Name + "\\" + parts.session.job.Name + ".scr"),
            "FTPACCT;part12;\r\nFTPGET;REMOTEFILE=dbase;LOCALFILE=F\\getdBaseP12.dat;SIZE=20000;\r\n");
}

}  // namespace
}  // namespace qvrcom::images
