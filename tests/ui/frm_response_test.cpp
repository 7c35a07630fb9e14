#include "ui/frm_response.h"

#include <gmock/gmock.h>

#include <QLabel>
#include <QPushButton>
#include <QTextEdit>

#include "ui/memory_windows.h"
#include "ui/modal_driver.h"

namespace qvrcom::ui {
namespace {

struct ResponseDialogTest : ::testing::Test {
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

}  // namespace
}  // namespace qvrcom::ui
