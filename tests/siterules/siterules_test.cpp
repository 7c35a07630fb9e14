#include <gmock/gmock.h>

#include "base/fault.h"
#include "doubles/bar_rows.h"
#include "doubles/memory_data.h"
#include "doubles/recording_components.h"
#include "doubles/recording_user_interface.h"
#include "siterules/device_address.h"
#include "siterules/firmware_rules.h"
#include "siterules/firmware_table.h"
#include "siterules/site_lookups.h"

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

struct FirmwareRulesTest : testing::Test {
  doubles::RecordingUserInterface ui;
  FirmwareRules rules{platform::Trap(ui)};
};

TEST_F(FirmwareRulesTest, JudgesCompatibilityByMachineType) {
  const struct {
    const char *machine_type, *verdict;
    std::vector<const char*> versions;
  } rows[] = {
      {"2", kCompatible, {"6.60", "6.69", "6.80", "6.89"}},
      {"2",
       kBackwardCompatible,
       {"6.59", "6.00", "5.00", "5.02", "5.10", "5.29", "5.bm", "5.bn", "5.bp", "05.C0", "5.ca", "5.CB",
        "5.CC", "5.cf", "5.cg", "6.ac"}},
      {"2",
       kNotCompatible,
       {"6.70", "6.79", "6.90", "5.03", "5.30", "6.AC", "5.cb", "6.6", " 6.60", "6.600"}},
      {"2", kNoFirmwareVersion, {"", "0"}},
      {"3", kCompatible, {"1.30", "1.39"}},
      {"3", kBackwardCompatible, {"1.29", "1.00"}},
      {"3", kNotCompatible, {"1.40", "6.61"}},
      {"3", kNoFirmwareVersion, {"0"}},
      {"4", "", {"6.61", ""}},
  };
  for (const auto& row : rows) {
    for (const char* version : row.versions)
      EXPECT_EQ(rules.Version_Compactibility(version, row.machine_type), row.verdict)
          << version << " on " << row.machine_type;
  }
  EXPECT_TRUE(ui.messages.empty());
  EXPECT_EQ(rules.Version_Compactibility("6.61", "two"), "");
  EXPECT_THAT(ui.texts(), testing::ElementsAre("Error_Handler: Version_Compactibility\r\nType mismatch"));
}

TEST_F(FirmwareRulesTest, TellsTheStatisticsGenerations) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "NO_FIRMWARE_VERSION"}, {"0", "NO_FIRMWARE_VERSION"}, {"5.00", "OldStats"}, {"5.01", "OldStats"},
      {"5.bm", "OldStats"},        {"5.bn", "OldStats"},         {"5.bp", "OldStats"}, {"05.C0", "OldStats"},
      {"5.ca", "OldStats"},        {"5.CB", "OldStats"},         {"5.cb", "NewStats"}, {"5.02", "NewStats"},
  };
  for (const auto& [version, generation] : cases)
    EXPECT_EQ(rules.Check_Firmware_Version(version), generation) << version;
}

TEST(ImageGeneration, IsChosenByMachineTypeAndExactVersion) {
  const struct {
    const char *machine, *generation;
    std::initializer_list<const char*> versions;
  } rows[] = {
      {"2",
       "5_0",
       {"5.00", "5.01", "5.02", "5.bm", "5.bn", "5.bp", "05.C0", "5.ca", "5.CB", "5.CC", "5.cf", "5.cg"}},
      {"2", "5_1", {"5.10", "5.19"}},
      {"2", "5_2", {"5.20", "5.29"}},
      {"2", "6_0", {"6.00", "6.09", "6.ac"}},
      {"2", "6_1", {"6.10", "6.29"}},
      {"2", "6_3", {"6.30", "6.39"}},
      {"2", "7_0", {"6.40", "6.49"}},
      {"2", "7_1", {"6.50", "6.69"}},
      {"2", "7_2", {"6.70", "1.05", "5.03", "5.30", "5.cb", "05.c0", "6.1", "6.150", " 6.15", "", "7.00"}},
      {"3", "7_0", {"1.00", "1.09"}},
      {"3", "7_1", {"1.10", "1.29"}},
      {"3", "7_2", {"1.30", "5.00", "6.ac"}},
      {" 2 ", "6_3", {"6.35"}},
      {"4", "", {"6.35"}},
  };
  for (const auto& row : rows) {
    for (const char* version : row.versions)
      EXPECT_EQ(image_generation(row.machine, version), row.generation)
          << row.machine << " \"" << version << '"';
  }
  EXPECT_THROW(image_generation("", "6.35"), base::Fault);
}

TEST(FirmwareTable, NamesTheVersionsWithRtqaOptions) {
  for (const char* version : {"1.00", "1.29", "6.10", "6.69"})
    EXPECT_TRUE(firmware_of(version) && firmware_of(version)->has_rtqa_options) << version;
  for (const char* version : {"1.30", "6.09", "6.70", "6.80", "5.CC", ""})
    EXPECT_FALSE(firmware_of(version) && firmware_of(version)->has_rtqa_options) << version;
}

}  // namespace
}  // namespace qvrcom::siterules
