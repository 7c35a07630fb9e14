#include <gmock/gmock.h>

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTextEdit>

#include "ui/file_chooser.h"
#include "ui/frm_response.h"
#include "ui/memory_windows.h"
#include "ui/message_boxes.h"
#include "ui/modal_driver.h"
#include "ui/uc_statistics_main.h"
#include "ui/widget_text.h"

namespace qvrcom::ui {
namespace {

using testing::ElementsAre;

struct ResponseDialogTest : testing::Test {
  QPushButton& button() { return child<QPushButton>(dialog, "cmdCancel"); }
  QLabel& label(const char* name) { return child<QLabel>(dialog, name); }
  // Lets the driver and the timer run, as the wait for the scheduler does.
  static void pump(int milliseconds) { QTest::qWait(milliseconds); }

  bool error = false;
  int cancels = 0;
  int ticks = 0;
  bool site_suspect = false;
  int logs = 0;
  int edits = 0;
  ResponseDialog dialog{{[this] { return std::string(error ? "It failed." : ""); }, [this] { return error; },
                         [this](QWidget*) { ++logs; }, [this] { return site_suspect; },
                         [this](QWidget*) { ++edits; }}};
  ResponseHandlers handlers{[] {},
                            [this] {
                              ++cancels;
                              dialog.close();
                            },
                            [this] { ++ticks; }};
};

TEST_F(ResponseDialogTest, TakesCloseBoxAndEscapeForTheButton) {
  using Way = void (*)(ResponseDialog&);
  const Way ways[] = {[](ResponseDialog& window) { static_cast<QWidget&>(window).close(); },
                      [](ResponseDialog& window) { QTest::keyClick(&window, Qt::Key_Escape); }};
  for (const Way way : ways) {
    cancels = 0;
    handlers.Form_Activate = [&] {
      dialog.set_cancel_enabled(false);
      way(dialog);
      dialog.set_cancel_enabled(true);
      dialog.set_cancel_visible(false);
      way(dialog);
      EXPECT_EQ(cancels, 0);
      EXPECT_TRUE(dialog.isVisible());
      dialog.set_cancel_visible(true);
      way(dialog);
    };
    dialog.run(handlers);
    EXPECT_EQ(cancels, 1);
  }
}

TEST_F(ResponseDialogTest, BlinksWithoutMovingAnything) {
  handlers.Form_Activate = [&] {
    dialog.set_info("Communicating with QVR+/RDN");
    dialog.set_hint("To cancel, press the cancel button and stop the session in JobPilot");
    dialog.set_timer(true);
    pump(20);
    const QPoint before = label("lblCancelCommInfo").pos();
    dialog.set_info_visible(false);
    EXPECT_TRUE(QTest::qWaitFor([this] { return ticks == 2; }, 10'000));
    EXPECT_EQ(label("lblCancelCommInfo").pos(), before);
    dialog.set_timer(false);
    const int seen = ticks;
    pump(600);
    EXPECT_EQ(ticks, seen);
    EXPECT_FALSE(child<QTextEdit>(dialog, "RichTextBox1").isVisible());
    dialog.set_cancel("OK");
    EXPECT_EQ(button().text(), "&OK");
    button().click();
  };
  dialog.run(handlers);
}

TEST_F(ResponseDialogTest, TellsOfAMissingSchedulerAndLeavesCancelToTheUser) {
  handlers.Form_Activate = [&] {
    dialog.set_timer(true);
    dialog.scheduler_gone("JobPilot has gone.");
    EXPECT_EQ(label("lblNotice").text(), "JobPilot has gone.");
    EXPECT_TRUE(label("lblNotice").isVisible());
    EXPECT_EQ(cancels, 0);
    dialog.set_timer(false);
    EXPECT_FALSE(label("lblNotice").isVisible());
    button().click();
  };
  dialog.run(handlers);
}

TEST_F(ResponseDialogTest, OffersLogAndSiteAfterTheErrorThatAsksForThem) {
  struct Row {
    bool error, site_suspect;
  };
  for (const Row row : {Row{false, false}, Row{true, false}, Row{true, true}}) {
    error = row.error;
    site_suspect = row.site_suspect;
    const ModalDriver driver({[&](QWidget&) {
      auto& open = child<QPushButton>(dialog, "cmdOpenLog");
      auto& edit = child<QPushButton>(dialog, "cmdEditSite");
      EXPECT_EQ(open.isVisible(), row.error);
      EXPECT_EQ(label("lblNotice").isVisible(), row.error);
      EXPECT_EQ(edit.isVisible(), row.site_suspect);
      open.click();
      edit.click();
      button().click();
    }});
    dialog.run(handlers);
  }
  EXPECT_EQ(logs, 3);
  EXPECT_EQ(edits, 3);
}

struct StatisticsMainTest : testing::Test {
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

TEST(MessageBoxesTest, ShowsTextTitleAndDetailAtOnce) {
  using platform::Button;
  using platform::Buttons;
  MessageBoxes boxes;
  struct Row {
    platform::Message message;
    const char* title;
    Qt::Key key;
    Button answer;
  };
  const Row rows[] = {
      {{.text = "ERROR! cmdOK_Click"}, "Host", Qt::Key_Return, Button::kOk},
      {{.text = "a\r\nb & c <b>", .title = "T", .detail = "why <b>\nnext"}, "T", Qt::Key_Escape, Button::kOk},
      {{.text = "?", .title = "T", .buttons = Buttons::kYesNoCancel}, "T", Qt::Key_Return, Button::kYes},
      {{.text = "?", .title = "T", .buttons = Buttons::kYesNoCancel}, "T", Qt::Key_Escape, Button::kCancel},
      {{.text = "?", .title = "T", .buttons = Buttons::kOkCancel, .act = "Reset Log"},
       "T",
       Qt::Key_Return,
       Button::kCancel},
      {{.text = "?", .title = "T", .buttons = Buttons::kYesNoCancel, .act = "Reset Log"},
       "T",
       Qt::Key_Return,
       Button::kNo},
      {{.text = "?", .title = "T", .act = "Reset Log", .refrain = "Keep"}, "T", Qt::Key_Return, Button::kOk},
  };
  for (const Row& row : rows) {
    const ModalDriver driver({[&](QWidget& box) {
      EXPECT_EQ(box.property("text").toString(), qt_text(row.message.text));
      EXPECT_EQ(box.windowTitle(), row.title);
      if (!row.message.detail.empty()) {
        const auto& detail = child<QLabel>(box, "qt_msgbox_informativelabel");
        EXPECT_TRUE(detail.isVisible());
        EXPECT_EQ(detail.textFormat(), Qt::PlainText);
        EXPECT_EQ(utf8(detail.text()), row.message.detail);
      }
      QStringList captions;
      for (const QPushButton* button : box.findChildren<QPushButton*>())
        captions += shown_caption(button->text());
      EXPECT_EQ(captions.contains("Reset Log"), !row.message.act.empty());
      press(box, row.key);
    }});
    EXPECT_EQ(boxes.show(row.message), row.answer) << row.message.text;
  }
}

TEST(FileChooserTest, WritesFiltersAsQtReadsThem) {
  EXPECT_EQ(qt_filter("Statistics Files (*.csv)|*.csv"), "Statistics Files (*.csv)");
  EXPECT_EQ(qt_filter("Sound|*.wav;*.au"), "Sound (*.wav *.au)");
}

}  // namespace
}  // namespace qvrcom::ui
