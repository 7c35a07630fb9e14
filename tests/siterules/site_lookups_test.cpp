#include "siterules/site_lookups.h"

#include <gmock/gmock.h>

#include "base/fault.h"
#include "doubles/bar_rows.h"
#include "doubles/memory_data.h"
#include "doubles/recording_components.h"
#include "siterules/device_address.h"

namespace qvrcom::siterules {
namespace {

using base::SiteConnection;

struct SiteLookupsTest : testing::Test, doubles::MemoryData {
  base::SiteValues site;
  doubles::RecordingComponents components;
  doubles::BarRows xml_rows;
  SiteLookups lookups{platform::Trap(ui), site, components, xml_rows, dbase};
};

TEST_F(SiteLookupsTest, TheLastRowOfAnAnswerDecides) {
  struct Case {
    void (SiteLookups::*lookup)();
    std::string base::SiteValues::*value;
    const char *component, *asked, *answer, *result;
  };
  using Site = base::SiteValues;
  const Case cases[] = {
      {&SiteLookups::Get_ControlCardType, &Site::ControlCardType, "create QVRdb.SITE", "Get_Site_Rows 42",
       "ControlCardType|OLD|-", "NEW"},
      {&SiteLookups::Get_Current_User, &Site::LoginName, "create QVRdb.Use", "Get_Current_User_Rows",
       "LoginName|", "admin"},
      {&SiteLookups::Get_Current_User, &Site::LoginName, "create QVRdb.Use", "Get_Current_User_Rows",
       "LoginName", "before"},
      {&SiteLookups::Get_Current_Config, &Site::CurrentConfigID, "create QVRdb.Config",
       "Get_Current_Config_Rows", "ID|-", "1"},
      {&SiteLookups::Get_Current_Config, &Site::CurrentConfigID, "create QVRdb.Config",
       "Get_Current_Config_Rows", "ID|3|12", "12"},
      {&SiteLookups::Get_Current_Config, &Site::CurrentConfigID, "create QVRdb.Config",
       "Get_Current_Config_Rows", "Other|x", "before"},
  };
  for (const Case& one : cases) {
    site = {};
    site.SiteID = "42";
    site.*one.value = "before";
    const std::string asked = one.asked;
    components.answers[asked.substr(0, asked.find(' '))] = one.answer;
    components.events.clear();
    (lookups.*one.lookup)();
    EXPECT_EQ(site.*one.value, one.result) << one.answer;
    EXPECT_EQ(components.events[0], one.component);
    EXPECT_EQ(components.events[1], one.asked);
  }
  EXPECT_THAT(ui.texts(),
              testing::ElementsAre("Error_Handler: Get_Current_Config\r\nItem not found in this collection"));
}

TEST_F(SiteLookupsTest, MachineTypeIsTheLastOneThatIsNotNull) {
  engine.answer("QVRSettings", {"Machine_Type_ID"}, {{"3"}, {"2"}, {std::nullopt}});
  site.CurrentConfigID = "5";
  lookups.QVRSettings_MachineTypeID();
  EXPECT_EQ(site.MachineType, "2");
  EXPECT_EQ(engine.statements.at(0).values.at(0).value, "5");
}

TEST_F(SiteLookupsTest, CopiesTheSiteByKeyThenByTitle) {
  SiteConnection office{
      {"Office", "101", "7", "lan", "direct", "modem", "code", "1", "dial", "555", "", "", ""}};
  SiteConnection depot{{"Depot", "102", "8", "", "", "", "", "0", "", "", "NEW", "6.61", "2"}};
  SiteConnection named_like_a_key{{"x", "y", "Office - 101", "other", "", "", "", "", "", "", "", "", ""}};
  site.SiteConnections = {office, depot, SiteConnection{}};
  site.FirmwareVersion = "kept";

  lookups.Get_Site("7");
  EXPECT_EQ(site.SiteName + site.UserSiteID + site.SiteID + site.IPLan + site.IPDirect + site.IPModem +
                site.AccessCode + site.ConnectMethod + site.DialupConnection + site.NumberToDial,
            "Office1017landirectmodemcode1dial555");
  EXPECT_EQ(site.FirmwareVersion, "kept");
  lookups.Get_Site("Depot - 102");
  EXPECT_EQ(site.SiteID + site.DeviceGeneration + site.FirmwareVersion + site.MachineType, "8NEW6.612");
  EXPECT_EQ(site.AccessCode, "");
  lookups.Get_Site("");
  lookups.Get_Site(" - ");
  EXPECT_EQ(site.SiteID, "8") << "the spare entry is no site";
  site.SiteConnections.push_back(named_like_a_key);
  lookups.Get_Site("Office - 101");
  EXPECT_EQ(site.IPLan, "other") << "a key goes before a title";
  EXPECT_EQ(site.MachineType, "") << "the type of the site before";
}

TEST(DeviceAddressChoice, FollowsTheConnectionMethod) {
  EXPECT_EQ(device_address("0", "lan", "direct", "modem"), "lan");
  EXPECT_EQ(device_address("1", "lan", "direct", "modem"), "modem");
  EXPECT_EQ(device_address("2", "lan", "direct", "modem"), "direct");
  EXPECT_EQ(device_address("2", "lan", "", "modem"), "lan");
  EXPECT_EQ(device_address("-3", "lan", "direct", "modem"), "lan");
  EXPECT_THROW(device_address("", "lan", "direct", "modem"), base::Fault);
}

}  // namespace
}  // namespace qvrcom::siterules
