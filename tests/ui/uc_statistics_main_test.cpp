#include "ui/uc_statistics_main.h"

#include <gmock/gmock.h>

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>

#include "ui/memory_windows.h"
#include "ui/modal_driver.h"
#include "ui/widget_text.h"

namespace qvrcom::ui {
namespace {

using ::testing::ElementsAre;

struct StatisticsMainTest : ::testing::Test {
  void start(const std::vector<const char*>& sites) {
    windows = std::make_unique<MemoryWindows>(sites);
    control = std::make_unique<ucStatisticsMain>(windows->parts());
    removed = std::make_unique<QSignalSpy>(control.get(), &ucStatisticsMain::RemoveMe);
    control->show();
    control->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(control.get()));
    control->setFocus();
  }
  void alt(Qt::Key key) { mnemonic(*control, key); }

  std::unique_ptr<MemoryWindows> windows;
  std::unique_ptr<ucStatisticsMain> control;
  std::unique_ptr<QSignalSpy> removed;
};

TEST_F(StatisticsMainTest, LeadsTabThroughEachModeInOrder) {
  start({"USA_Office"});
  const auto walk = [&](const std::vector<const char*>& names) {
    for (const char* name : names) {
      press(*control, Qt::Key_Tab);
      ASSERT_NE(control->focusWidget(), nullptr);
      EXPECT_EQ(control->focusWidget()->objectName().toStdString(), name);
    }
  };
  EXPECT_EQ(control->focusWidget()->objectName(), "optViewStat");
  walk({"txtFilename", "cmdCommonDialog", "cmdOK", "cmdApply", "cmdCancel", "optViewStat"});
  press(*control, Qt::Key_Down);
  EXPECT_TRUE(child<QRadioButton>(*control, "optRetrieveStats").isChecked());
  EXPECT_TRUE(child<QGroupBox>(*control, "fraRetrStats").isVisible());
  walk({"cmbSelectSite", "cmbSelectPartition", "cmdOK", "cmdApply", "cmdCancel", "optRetrieveStats"});
}

TEST_F(StatisticsMainTest, RetrievesByKeyboardAlone) {
  start({"USA_Office", "Depot"});
  alt(Qt::Key_R);
  alt(Qt::Key_S);
  press(*control, Qt::Key_Down);
  alt(Qt::Key_P);
  press(*control, Qt::Key_Down);
  press(*control, Qt::Key_Down);
  {
    const auto ended = [](QWidget& dialog) {
      return child<QPushButton>(dialog, "cmdCancel").accessibleName() == "OK";
    };
    const ModalDriver driver({ModalDriver::Step(ended, [](QWidget& dialog) {
      EXPECT_EQ(dialog.windowTitle(), "RESPONSE DIALOG");
      EXPECT_EQ(utf8(child<QLabel>(dialog, "lblInfo").text()),
                "Completed Retrieve Statistics for Partition ");
      press(dialog, Qt::Key_Return);
    })});
    alt(Qt::Key_O);
  }
  EXPECT_EQ(windows->suite.session.run.PartitionID, "3");
  EXPECT_EQ(windows->suite.session.site.SiteID, "7");
  EXPECT_THAT(windows->viewed, ElementsAre(windows->suite.session.run.StatsResultFile));
  EXPECT_EQ(removed->count(), 1);
}

TEST_F(StatisticsMainTest, ViewsTheFileThatWasChosenOrTyped) {
  start({});
  windows->chosen = "/tmp/Stats 1.csv";
  alt(Qt::Key_Period);
  EXPECT_EQ(child<QLineEdit>(*control, "txtFilename").text(), "/tmp/Stats 1.csv");
  alt(Qt::Key_F);
  QTest::keyClicks(control->focusWidget(), "x");  // the label's key has selected the text
  alt(Qt::Key_A);
  EXPECT_THAT(windows->viewed, ElementsAre("x"));
  EXPECT_EQ(removed->count(), 0);
  alt(Qt::Key_C);
  EXPECT_EQ(removed->count(), 1);
}

TEST_F(StatisticsMainTest, HidesPartitionsWhereNoSiteIs) {
  start({});
  alt(Qt::Key_R);
  EXPECT_EQ(child<QComboBox>(*control, "cmbSelectSite").currentText(), "< No Site is defined >");
  for (const char* name : {"lblSelectPartition", "cmbSelectPartition"})
    EXPECT_FALSE(child<QWidget>(*control, name).isVisible()) << name;
  for (const char* name : {"cmdOK", "cmdApply"})
    EXPECT_FALSE(child<QWidget>(*control, name).isEnabled()) << name;
}

}  // namespace
}  // namespace qvrcom::ui
