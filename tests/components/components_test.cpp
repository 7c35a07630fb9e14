#include <gmock/gmock.h>

#include "adapters/temporary_suite.h"
#include "adapters/xml_rows_qt.h"
#include "base/fault.h"
#include "components/database_components.h"
#include "components/image_components.h"
#include "components/rows_xml.h"
#include "components/statistics_component.h"
#include "csv/csv_records.h"
#include "devicefiles/sections.h"
#include "doubles/recording_user_interface.h"
#include "environment/statistics_tables.h"
#include "siterules/site_lookups.h"

namespace qvrcom::components {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

TEST(RowsXml, ReadsBackWhatWasWritten) {
  base::Rows rows({"ID", "Odd name <&'>"});
  rows.add({"", std::nullopt});
  rows.add({"a'b\"<&>\t\r\n", "caf\xC3\xA9 \x01."});
  const base::Rows back = adapters::QtXmlRows().load(rows_xml(rows));
  EXPECT_EQ(back.columns(), rows.columns());
  ASSERT_EQ(back.size(), 2U);
  EXPECT_EQ(back[0]["ID"], base::Field(""));
  EXPECT_EQ(back[0]["Odd name <&'>"], base::Field());
  EXPECT_EQ(back[1]["ID"], base::Field("a'b\"<&>\t\r\n"));
  EXPECT_EQ(back[1]["Odd name <&'>"], base::Field("caf\xC3\xA9 ."));
}

struct DatabaseComponentsTest : testing::Test, adapters::TemporarySuite {
  DatabaseComponentsTest() {
    set_up();
    add_database_components(registry, connection);
  }
  base::Rows rows(const char* component, const char* operation, std::vector<std::string> arguments) {
    return xml.load(registry.create(component)->call(operation, arguments).value());
  }

  ComponentRegistry registry;
  adapters::QtXmlRows xml;
};

TEST_F(DatabaseComponentsTest, AnswersTheLookups) {
  query("INSERT INTO Site (SiteID, ControlCardType) VALUES (5, 'OLD'), (6, NULL)");
  doubles::RecordingUserInterface ui;
  base::SiteValues site;
  environment::DBase dbase(connection);
  siterules::SiteLookups lookups(platform::Trap(ui), site, registry, xml, dbase);
  for (const auto& [id, card] : {std::pair("5", "OLD"), std::pair("6", "NEW"), std::pair("7", "NEW")}) {
    site.SiteID = id;
    lookups.Get_ControlCardType();
    EXPECT_EQ(site.ControlCardType, card) << id;
  }
  lookups.Get_Current_User();
  lookups.Get_Current_Config();
  lookups.QVRSettings_MachineTypeID();
  lookups.Update_SiteID_in_SessionQVR();
  EXPECT_EQ(site.LoginName + site.CurrentConfigID + site.MachineType, "admin12");
  EXPECT_EQ(value("SELECT SiteID FROM SessionQVR"), "7");
  EXPECT_TRUE(ui.messages.empty());
}

TEST_F(DatabaseComponentsTest, AnswersPartitionsAndMessages) {
  EXPECT_EQ(rows("QVRdb.Config", "Get_Partition_Rows", {"1", "64"}).size(), 1U);
  EXPECT_EQ(rows("QVRdb.Config", "Get_Partition_Rows", {"1", "65"}).size(), 0U);
  query("INSERT INTO Node_MSG (ConfigID, PartID, NodeNumber) VALUES (1, 2, 3), (1, 2, 1), (1, 3, 1)");
  const base::Rows nodes = rows("QVRdb.Nodes", "Get_MSG_Nodes", {"1", "2"});
  ASSERT_EQ(nodes.size(), 2U);
  EXPECT_EQ(nodes[0].text("NodeNumber"), "1");
}

TEST_F(DatabaseComponentsTest, RefusesUnknownNamesAndWrongArguments) {
  EXPECT_THROW(registry.create("QVRdb.Nothing"), base::Fault);
  EXPECT_THROW(rows("QVRdb.SITE", "Get_Nothing", {}), base::Fault);
  EXPECT_THROW(rows("QVRdb.SITE", "Get_Site_Rows", {}), base::Fault);
}

// A set-up machine with the bytes that the simulated device serves for its partition 3, and a session that
// works on site 5.
struct ImageComponentsTest : testing::Test, adapters::TemporarySuite {
  ImageComponentsTest() {
    set_up();
    add_image_components(registry, connection, files);
    add_statistics_component(registry, {connection, dbase, folders, files, ui});
    query(
        "INSERT INTO Site (SiteID, User_Defined_Site_Name, User_Defined_Site_ID, FirmwareVersion) VALUES "
        "(5, 'Town, Hall', '101', '5.01'), (6, 'Harbour', '102', '5.01')");
    query(
        "INSERT INTO File_Handling (SiteID, FileType, AutoIncrements) VALUES (5, 'Statistics', ''), "
        "(6, 'Statistics', '')");
    query("UPDATE SessionQVR SET SiteID = 5");
    std::filesystem::create_directories(folder.path + "/docs/Corbelin/QVRCOM+/Stats");
  }

  // The file as a suite path.
  std::string sample(const std::string& name) {
    return adapters::suite_path(std::string(QVRCOM_SAMPLES) + "/" + name);
  }
  std::string saved(const std::string& name, const std::string& bytes) {
    const std::string path = adapters::suite_path(folder.path + "/" + name);
    files.replace(path, bytes);
    return path;
  }
  std::string call(const std::string& component, const std::string& operation,
                   const std::vector<std::string>& arguments) {
    return registry.create(component)->call(operation, arguments).value_or("null");
  }
  std::string decode_lines(const std::string& file) {
    return call("QVRBIN7_2.Part", "DecodeLineStats", {"1", "3", file});
  }
  std::string decode_nodes(const std::string& file) {
    return call("QVRBIN7_2.Part", "DecodeNodeStats", {"1", " 3 ", file});
  }
  // The good files of both kinds.
  void decode_both() {
    EXPECT_EQ(decode_lines(sample("line_statistics/whole")), "OK");
    EXPECT_EQ(decode_nodes(sample("node_statistics/whole")), "OK");
  }
  std::string write_csv() { return call("QVRStats.Stats", "WriteStatsCsv", {"1", "3"}); }
  std::string count(const std::string& what) { return value("SELECT COUNT(*) FROM " + what); }

  doubles::RecordingUserInterface ui;
  environment::DBase dbase{connection};
  ComponentRegistry registry;
};

TEST_F(ImageComponentsTest, EveryGenerationReadsVersionOne) {
  for (const char* name : {"5_0", "5_1", "5_2", "6_0", "6_1", "6_3", "7_0", "7_1", "7_2"}) {
    const std::string component = std::string("QVRBIN") + name;
    EXPECT_EQ(call(component + ".Sys", "DecodeSystemImage", {"1", sample("system_image/whole")}), "OK")
        << name;
    EXPECT_EQ(
        call(component + ".Part", "DecodePartitionImage", {"1", "3", "5", sample("partition_image/whole")}),
        "OK");
    EXPECT_EQ(call(component + ".Part", "DecodeLineStats", {"1", "3", sample("line_statistics/whole")}),
              "OK");
    EXPECT_EQ(call(component + ".Part", "DecodeNodeStats", {"1", "3", sample("node_statistics/whole")}),
              "OK");
  }
  EXPECT_THROW(registry.create("QVRBIN6_2.Part"), base::Fault);
}

TEST_F(ImageComponentsTest, StatisticsTakeThePlaceOfThoseBefore) {
  query(
      "INSERT INTO Stats_Line_Call_Counts (ConfigID, PartitionID, Line) VALUES (1, 3, 99), (1, 4, 98), "
      "(1000, 3, 97)");
  for (int round = 0; round < 2; ++round) {
    decode_both();
    for (const environment::StatisticsTable& table : environment::statistics_tables())
      EXPECT_NE(count(std::string(table.name) + " WHERE ConfigID = 1 AND PartitionID = 3 AND SiteID = 5"),
                "0");
    EXPECT_EQ(count("Stats_Node_Access"), "11");
    EXPECT_EQ(count("Stats_Line_Call_Counts"), "6") << "other partitions and configurations stay";
  }
  EXPECT_EQ(value("SELECT NodeDescription || Accesses FROM Stats_Node_Access WHERE NodeType = 'MSG'"),
            "Welcome303");
  EXPECT_EQ(value("SELECT LeadsToNodeType || LeadsToNodeNumber || '/' || FirstTry || '/' || LaterTries FROM "
                  "Stats_Detail_DTMF WHERE Choice = '1'"),
            "MSG2/46/9");
  EXPECT_EQ(value("SELECT LeadsToNodeType FROM Stats_Detail_Auto"), "NULL");
  EXPECT_EQ(value("SELECT CountedUntil FROM Stats_VOX_Selection_Counts"), "2026-11-16 12:10:05");
}

TEST_F(ImageComponentsTest, ABadFileOfStatisticsTakesTheOldRowsAlong) {
  const std::string foreign = saved("linestatP3.dat", std::string(28, '\1'));
  decode_both();
  decode_lines(foreign);
  EXPECT_THAT(write_csv(), StartsWith("OK"));
  const std::string half = files.read(folders.GetStatsFolder({}) + "Stats1.csv");
  EXPECT_THAT(half, testing::AllOf(HasSubstr("Node,Name,Accesses"), testing::Not(HasSubstr("Line,Calls"))));
  decode_nodes(foreign);
  EXPECT_THAT(write_csv(), HasSubstr("There are no statistics"));
}

TEST_F(ImageComponentsTest, ABadFileIsAMessageAndChangesNothing) {
  decode_both();
  const std::string foreign = saved("linestatP3.dat", std::string(28, '\1'));
  EXPECT_THAT(decode_lines(foreign),
              StartsWith("linestatP3.dat: Not a line statistics file of this suite. "));
  EXPECT_THAT(decode_lines(saved("big.dat", std::string(devicefiles::kLargestFile + 1, 'x'))),
              StartsWith("big.dat: Not a device file. It has 1048577 bytes"));
  EXPECT_THAT(decode_lines(saved("gone", "") + "2"), StartsWith("gone2: File not found"));
  EXPECT_THAT(call("QVRBIN7_2.Part", "DecodeLineStats", {"1", "4", sample("line_statistics/whole")}),
              HasSubstr("It holds partition 3, not 4."));
  for (const char* partition : {"65", "0", "", "x"})
    EXPECT_NE(call("QVRBIN7_2.Part", "DecodeLineStats", {"1", partition, sample("line_statistics/whole")}),
              "OK");

  decode_both();
  query("DROP TABLE Stats_Detail_VOX");
  query("UPDATE Stats_Node_Access SET Accesses = 1");
  EXPECT_THAT(decode_nodes(sample("node_statistics/whole")), HasSubstr("Stats_Detail_VOX"));
  EXPECT_EQ(value("SELECT SUM(Accesses) FROM Stats_Node_Access"), "11") << "half a file was stored";
  EXPECT_EQ(count("Stats_Line_Call_Counts"), "4");
  EXPECT_EQ(count("Partition_Settings"), "64");
}

TEST_F(ImageComponentsTest, TheSystemImageReplacesTheConfiguration) {
  query("UPDATE QVRSettings SET StartNodeType = 'CMD', StartNodeNumber = 4");
  query("INSERT INTO QVRSettings (ConfigID, PartitionID) VALUES (1, 9), (2, 9)");
  query("INSERT INTO Used_Lines (Config_ID, Line) VALUES (1, 77), (2, 78)");
  EXPECT_EQ(call("QVRBIN7_2.Sys", "DecodeSystemImage", {"1", sample("system_image/whole")}), "OK");
  EXPECT_EQ(value("SELECT GROUP_CONCAT(PartitionID || Name) FROM Partition_Settings WHERE Config_ID = 1"),
            "1Billing 1,2Service 2,3Weather line 3,64Events 64");
  EXPECT_EQ(value("SELECT GROUP_CONCAT(PartitionID || '-' || Machine_Type_ID || FrontPanelAccess) FROM "
                  "QVRSettings WHERE ConfigID = 1"),
            "1-21,2-21,3-21,64-21");
  EXPECT_EQ(value("SELECT StartNodeType || StartNodeNumber || ControlCardType FROM QVRSettings WHERE "
                  "PartitionID = 1"),
            "CMD4NEW");
  EXPECT_EQ(count("Used_Lines WHERE Config_ID = 1"), "24");
  EXPECT_EQ(count("Used_Lines WHERE Config_ID = 2"), "1");
  EXPECT_EQ(count("QVRSettings WHERE ConfigID = 2"), "1");
  EXPECT_EQ(value("SELECT SwitchType FROM RTQAConfig"), "2");
  EXPECT_EQ(dbase.run("Get_Used_Lines_RTQAConfig", {"1"}).size(), 24U);
}

TEST_F(ImageComponentsTest, ThePartitionImageKeepsWhatItDoesNotCarry) {
  query(
      "INSERT INTO Node_MSG (ConfigID, PartID, NodeNumber, NodeDescription, QVRFilename) VALUES "
      "(1, 3, 1, 'old', 'one.wav'), (1, 3, 0, 'pool', ''), (1, 3, 9, 'gone', ''), (1, 4, 9, 'other', '')");
  query("INSERT INTO Node_TABLE (ConfigID, PartID, NodeNumber) VALUES (1, 3, 5)");
  query(
      "INSERT INTO Detail_TABLE_Action_NIS_Match (ConfigID, PartID, NodeMasterID) VALUES (1, 3, 5), (1, 3, "
      "6)");
  query("INSERT INTO Node_STYLE (ConfigID, PartID, NodeNumber) VALUES (1, 3, 2)");
  query("INSERT INTO STYLE_Full (ConfigID, PartID, StyleID) VALUES (1, 3, 2)");
  EXPECT_EQ(call("QVRBIN7_2.Part", "DecodePartitionImage", {"1", "3", "5", sample("partition_image/whole")}),
            "OK");
  EXPECT_EQ(
      value("SELECT GROUP_CONCAT(NodeNumber || NodeDescription || COALESCE(QVRFilename, '')) FROM (SELECT * "
            "FROM Node_MSG WHERE PartID = 3 ORDER BY NodeNumber)"),
      "0pool,1Welcomeone.wav,2Opening hours, holidays,3The \"Night\" greeting");
  EXPECT_EQ(value("SELECT NodeTypeID || NodeType FROM Node_AUTO WHERE PartID = 3"), "10AUTO");
  EXPECT_EQ(count("Node_MSG WHERE PartID = 4"), "1");
  EXPECT_EQ(count("Node_TABLE") + count("Node_STYLE") + count("STYLE_Full"), "000");
  EXPECT_EQ(value("SELECT NodeMasterID FROM Detail_TABLE_Action_NIS_Match"), "6");
  EXPECT_EQ(
      value("SELECT StartNodeType || StartNodeNumber || PartitionEnabled || COALESCE(RemoteModeType, '-') "
            "FROM QVRSettings WHERE PartitionID = 3"),
      "MSG11-");
}

TEST_F(ImageComponentsTest, TheCsvNamesItsSiteAndHoldsEveryTable) {
  decode_both();
  const std::string folder_path = folders.GetStatsFolder({});
  EXPECT_EQ(write_csv(), "OK" + folder_path + "Stats1.csv");
  EXPECT_EQ(write_csv(), "OK" + folder_path + "Stats2.csv");
  const std::string text = files.read(folder_path + "Stats1.csv");
  EXPECT_THAT(text, StartsWith("SiteName,\"Town, Hall\"\r\nUserSiteID,101\r\nReport,Call statistics\r\n"
                               "Firmware,5.01\r\nPartition,3\r\nDevice time,2026-11-16 12:10:05\r\n"
                               "Lines counted since,"));
  for (const char* piece :
       {"\r\nLine,Calls,Answered,Busy,No Answer,Transfers,Seconds In Use,Longest Call\r\n1,", "\r\nTotal,",
        "\r\n\r\nLines Active,Times,Seconds\r\n1,", "\r\n\r\nNode,Name,Accesses\r\nMSG1,Welcome,303\r\n",
        "\r\nMSG2,\"Opening hours, holidays\",",
        "\r\n\r\nNode,Selections,Invalid Tries,Timed Out,Aborted\r\nDTMF1,", "\r\nVOX1,36,18,2,3\r\n",
        "\r\n\r\nNode,Choice,Selections\r\nAUTO1,200-249,31\r\n", "\r\nAUTO1,200-249,Out of the partition,",
        "\r\nDTMF1,1,MSG2,46,9\r\n"})
    EXPECT_THAT(text, HasSubstr(piece));
  EXPECT_THAT(
      csv::parse_csv(text),
      testing::Contains(ElementsAre("Total", value("SELECT SUM(Calls) FROM Stats_Line_Call_Counts"),
                                    value("SELECT SUM(Answered) FROM Stats_Line_Call_Counts"), testing::_,
                                    testing::_, value("SELECT SUM(Transfers) FROM Stats_Line_XFER_Counts"),
                                    value("SELECT SUM(SecondsInUse) FROM Stats_Line_Call_Counts"),
                                    value("SELECT MAX(LongestCall) FROM Stats_Line_Call_Counts"))));
  EXPECT_TRUE(ui.messages.empty());
}

TEST_F(ImageComponentsTest, TheCsvNeverShowsAnotherSitesNumbers) {
  decode_both();
  query("UPDATE SessionQVR SET SiteID = 6");
  EXPECT_THAT(write_csv(), StartsWith("Statistics of partition 3: There are no statistics. "));
  decode_nodes(sample("node_statistics/whole"));
  EXPECT_THAT(write_csv(), StartsWith("OK"));
  const std::string text = files.read(folders.GetStatsFolder({}) + "Stats1.csv");
  EXPECT_THAT(text, StartsWith("SiteName,Harbour\r\n"));
  EXPECT_THAT(text, testing::Not(HasSubstr("Line,Calls")));
  query("DELETE FROM File_Handling");
  EXPECT_THAT(write_csv(), testing::Not(StartsWith("OK")));
  query("UPDATE SessionQVR SET SiteID = NULL");
  EXPECT_THAT(write_csv(), HasSubstr("There is no site"));
}

}  // namespace
}  // namespace qvrcom::components
