#include "components/database_components.h"

#include <gmock/gmock.h>

#include "adapters/temporary_suite.h"
#include "adapters/xml_rows_qt.h"
#include "base/fault.h"
#include "components/rows_xml.h"
#include "doubles/recording_user_interface.h"
#include "siterules/site_lookups.h"

namespace qvrcom::components {
namespace {

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

}  // namespace
}  // namespace qvrcom::components
