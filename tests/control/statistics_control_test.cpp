#include "control/statistics_control.h"

#include <gmock/gmock.h>

#include "doubles/memory_lock.h"
#include "session/memory_suite.h"

namespace qvrcom::control {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The control on a memory suite; its view, host, viewer and chooser write what they are told into `log`.
struct ControlTest : ::testing::Test, ControlView, ControlEvents, StatisticsViewer, FileChooser {
  ControlTest() { suite.session.site = {}; }

  using Fields = std::vector<base::Field>;
  void add_site(const Fields& fields) { sites.push_back(fields); }
  void store_sites() {
    suite.engine.answer("SELECT FirmwareVersion FROM Site", {"FirmwareVersion"}, {{firmware}});
    suite.engine.answer(
        "FROM Site",
        {"SiteID", "User_Defined_Site_Name", "User_Defined_Site_ID", "ControlCardType", "ConnectMethodID",
         "IPLAN", "IPMODEM", "AccessCode", "DialupConnection", "NumberToDial", "FirmwareVersion"},
        sites);
  }
  void start() {
    store_sites();
    control.UserControl_Initialize();
    control.optRetrieveStats_Click();
  }

  void show_sites(const ListEntries& entries) override { site_entries = entries; }
  void show_partitions(const ListEntries& entries) override { partition_entries = entries; }
  void show_state(const ControlState&) override {}
  void set_hourglass(bool busy) override { log.push_back(busy ? "busy" : "free"); }
  void RemoveMe() override { log.push_back("RemoveMe"); }
  void ProcessDone(const std::string&) override { log.push_back("ProcessDone"); }
  void hand_over(const std::string& csv_file) override { log.push_back("show " + csv_file); }
  void show_modal() override { log.push_back(lock.held ? "viewer under lock" : "viewer"); }
  std::optional<std::string> open_file(const FileChoice& choice) override {
    log.push_back(choice.filter + " " + std::to_string(choice.flags));
    return chosen;
  }

  struct Windows : session::SessionWindows {
    explicit Windows(ControlTest& owner) : test(owner) {}
    std::unique_ptr<session::SessionWindow> make() override {
      test.log.push_back(test.lock.held ? "session under lock" : "session");
      return std::make_unique<session::RecordingView>(test.shown);
    }
    ControlTest& test;
  };

  session::MemorySuite suite;
  session::Shown shown;
  doubles::MemoryLock lock;
  std::vector<Fields> sites;
  base::Field firmware = "6.62";
  std::optional<std::string> chosen;
  std::vector<std::string> log;
  ListEntries site_entries, partition_entries;
  Windows windows{*this};
  session::SessionRun screen{suite.parts(), windows};
  session::SessionGate gate{lock, suite.ui};
  environment::DataBase database{suite.connection};
  sitebook::SiteBook site_book{suite.connection};
  StatisticsControl control{
      {{suite.parts().rules, database, gate, screen, suite.link, site_book}, *this, *this, *this, *this}};
};

const ControlTest::Fields kOffice = {"7",  "USA_Office", "101", std::nullopt, "0",   "10.0.0.5",
                                     "10", "secret",     "",    "",           "6.62"};

TEST_F(ControlTest, ListsSitesWithTheirDefaults) {
  add_site({"1", std::nullopt, "5", std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt,
            std::nullopt, std::nullopt, std::nullopt});
  add_site({"2", "Depot", std::nullopt, "", "", "", "", "", "", "", ""});
  start();
  EXPECT_THAT(site_entries, ElementsAre(ListEntry{"<Please select a site>", 0}, ListEntry{" - 5", 1},
                                        ListEntry{"Depot - ", 2}));
  EXPECT_EQ(control.sites().row(0),
            (sitebook::SiteRecord{1, "", "5", "NEW", "0", "255.255.255.255", "192.168.101.2", "",
                                  "<No Connection Defined>", "", ""}));
  EXPECT_EQ(control.sites().row(1), (sitebook::SiteRecord{2, "Depot", "", "", "0", "255.255.255.255",
                                                          "192.168.101.2", "", "", "", ""}));
  ASSERT_EQ(partition_entries.size(), 64U);
  EXPECT_EQ(partition_entries[63], (ListEntry{"Partition 64", 64}));
  control.select_partition(9);
  control.select_site(0);  // any change of site starts the partitions anew
  EXPECT_EQ(control.state().partition, 0);
  EXPECT_TRUE(control.state().buttons_enabled);
}

TEST_F(ControlTest, HasNothingToRetrieveWithoutSites) {
  start();
  EXPECT_THAT(site_entries, ElementsAre(ListEntry{"< No Site is defined >", 0}));
  EXPECT_FALSE(control.state().buttons_enabled);
  EXPECT_FALSE(control.state().partitions_visible);
  control.cmdOK_Click();
  EXPECT_THAT(suite.ui.texts(), ElementsAre("No Site is available"));
  EXPECT_EQ(suite.ui.messages[0].title, "Retrieve And View Statistics");
  EXPECT_THAT(log, IsEmpty());
  control.optViewStat_Click();
  EXPECT_TRUE(control.state().buttons_enabled);
}

TEST_F(ControlTest, ReportsADatabaseThatIsNotThere) {
  suite.engine.refusal = "File not found";
  start();
  EXPECT_THAT(suite.ui.texts(), ElementsAre("ERROR!  Load_Sites"));
  EXPECT_EQ(suite.ui.messages[0].detail, "File not found: NewDB.mdb");
}

TEST_F(ControlTest, ViewsAFile) {
  store_sites();
  control.UserControl_Initialize();
  control.cmdOK_Click();
  EXPECT_THAT(suite.ui.texts(), ElementsAre("Please Select a Filename"));
  chosen = "/data/a.csv";
  control.cmdCommonDialog_Click();
  chosen.reset();
  control.cmdCommonDialog_Click();
  const std::string choice = "Statistics Files (*.csv)|*.csv 4096";
  EXPECT_THAT(log, ElementsAre(choice, choice));
  log.clear();
  control.cmdApply_Click();
  control.cmdOK_Click();
  EXPECT_THAT(log, ElementsAre("busy", "show /data/a.csv", "free", "viewer", "busy", "show /data/a.csv",
                               "free", "viewer", "RemoveMe"));
}

TEST_F(ControlTest, RetrievesAndViews) {
  add_site(kOffice);
  start();
  control.cmdOK_Click();
  EXPECT_THAT(suite.ui.texts(), ElementsAre("Please select a site"));
  control.select_site(1);
  control.select_partition(2);
  control.cmdOK_Click();
  const std::string csv = "C:\\Docs\\Corbelin\\QVRCOM+\\Stats\\Stats1.csv";
  EXPECT_THAT(log, ElementsAre("session under lock", "show " + csv, "free", "viewer", "RemoveMe"));
  EXPECT_EQ(suite.files.content[csv], "SiteName,USA_Office\r\nUserSiteID,101\r\nLine,Calls\r\n1,2\r\n");
  EXPECT_THAT(suite.session.site.SelectedSites, ElementsAre("USA_Office - 101", ""));
  EXPECT_THAT(suite.session.site.SiteConnections[0].fields,
              ElementsAre("USA_Office", "101", "7", "10.0.0.5", "", "10", "secret", "0", "", "", "", "", ""));
  EXPECT_THAT(suite.session.site.SiteConnections[1].fields, ::testing::Each(""));
  const auto updated =
      std::find_if(suite.engine.statements.begin(), suite.engine.statements.end(),
                   [](const auto& each) { return each.sql.starts_with("UPDATE SessionQVR"); });
  ASSERT_NE(updated, suite.engine.statements.end());
  EXPECT_EQ(updated->values[0].value, "7");
  EXPECT_EQ(suite.session.run.PartitionID, "3");
}

// Card types are read one row late: the site listed after the selected one decides.
TEST_F(ControlTest, LooksAtTheNextSitesCard) {
  ControlTest::Fields old = kOffice;
  old[0] = "8";
  old[3] = "OLD";
  add_site(kOffice);
  add_site(old);
  start();
  control.select_site(1);
  control.cmdOK_Click();
  EXPECT_THAT(suite.ui.texts(), ElementsAre("Haven't Implemented the communication to Old QVR"));
  EXPECT_THAT(log, ElementsAre("RemoveMe"));
  control.select_site(2);
  control.cmdApply_Click();
  EXPECT_EQ(suite.session.run.SessionStatus, "Completed");
}

TEST_F(ControlTest, LoadsThePartitionsOfTheConfiguration) {
  suite.engine.answer("FROM Partition_Settings", {"PartitionID", "Name"},
                      {{"0", "None"}, {"1", "Main"}, {"64", std::nullopt}, {"65", "Beyond"}});
  control.Load_Partitions();
  EXPECT_EQ(control.partitions().size(), 4U);
  suite.session.site.DeviceGeneration = "NEW";
  control.Load_Partitions();
  EXPECT_THAT(control.partitions(), ElementsAre(ListEntry{"1 - Main", 1}, ListEntry{"Part64", 64}));
}

}  // namespace
}  // namespace qvrcom::control
