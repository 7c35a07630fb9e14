// The pages that ask a device: each run goes through the real session dialog on memory parts.

#include <QFile>
#include <QSpinBox>

#include "desktop/device_texts.h"
#include "desktop/page_test.h"
#include "desktop/session_stopper.h"
#include "devicefiles/device_time.h"
#include "doubles/system_information_bytes.h"
#include "ui/reading_text.h"
#include "ui/transfer_progress.h"

namespace qvrcom::desktop {
namespace {

const base::LocalTime kMoment = base::local_time(2026, 11, 15, 9, 8, 7);

// Answers with the paths it was given.
struct GivenPaths : ui::FileChooserQt {
  std::optional<std::string> open_file(const control::FileChoice&) override { return open; }
  std::optional<std::string> save_file(const std::string&, const std::string& name) override {
    proposed = name;
    return save;
  }
  std::optional<std::string> open, save;
  std::string proposed;
};

struct DevicePages : PageTest {
  DevicePages() {
    windows.suite.scheduler.sends = [this](const std::string& local) -> std::optional<std::string> {
      return device[local.substr(local.rfind('\\') + 1)];
    };
  }
  template <class Page>
  Page& open(std::unique_ptr<Page> made) {
    Page& shown = PageTest::open(std::move(made));
    child<QComboBox>(shown, "cmbSite").setCurrentIndex(1);
    return shown;
  }
  DevicePage& device_page() {
    return open(std::make_unique<DevicePage>(DevicePageParts{request, sites, chooser}));
  }
  // Clicks, and closes the session dialog when its run has ended.
  void run(
      const char* button, const char* info = nullptr, const std::function<void()>& before_ok = [] {}) {
    const auto ended = [](QWidget& dialog) {
      return child<QPushButton>(dialog, "cmdCancel").accessibleName() == "OK";
    };
    const ModalDriver driver({ModalDriver::Step(ended, [&](QWidget& dialog) {
      const std::string shown = ui::utf8(child<QLabel>(dialog, "lblInfo").text());
      EXPECT_EQ(info == nullptr ? shown : info, shown);
      before_ok();
      press(dialog, Qt::Key_Return);
    })});
    click(button);
  }
  std::string text(const char* name = "txtAnswer") { return PageTest::text(name); }
  std::map<std::string, std::string>& files() { return windows.suite.files.content; }
  std::vector<platform::Message>& boxes() { return windows.suite.ui.messages; }

  MemoryWindows windows{{"USA_Office"}};
  SessionStopper stopper{windows.screen, windows.suite.ui, windows.control, windows.suite.session};
  requests::SessionRequestParts request{windows.parts().request.rules,
                                        windows.database,
                                        windows.gate,
                                        stopper,
                                        windows.suite.link,
                                        windows.site_book};
  environment::DatabaseConnection connection{windows.suite.engine, windows.suite.folders};
  sitebook::SiteBook sites{connection};
  GivenPaths chooser;
  std::map<std::string, std::string> device;  // by local name
};

TEST_F(DevicePages, PutTheClocksSideBySideAndSetTheDevice) {
  windows.suite.clock.time = kMoment + std::chrono::seconds(90);
  device["time"] = devicefiles::write_device_time({kMoment});
  device_page();
  EXPECT_EQ(label("lblDeviceClock"), "not read yet");
  run("cmdReadClock", "Get Date And Time Completed",
      [&] { windows.suite.clock.time += std::chrono::hours(2); });  // somebody answers the telephone
  EXPECT_EQ(label("lblDeviceClock"), "2026-11-15 09:08:07");
  EXPECT_THAT(label("lblPcClock"), StartsWith("2026-11-15 11:09:3"));
  EXPECT_THAT(
      label("lblDifference"),
      testing::MatchesRegex("Read at 2026-11-15 09:09:3.\\. The device is 9. seconds behind the PC\\."));

  windows.suite.ui.answers = {platform::Button::kCancel};
  click("cmdSetClock");
  EXPECT_THAT(windows.suite.scheduler.uploads, IsEmpty());
  const base::LocalTime now = windows.suite.clock.now();
  run("cmdSetClock");
  EXPECT_THAT(windows.suite.scheduler.uploads, ElementsAre(devicefiles::write_device_time({now})));
  EXPECT_EQ(label("lblDeviceClock"), "not read yet");
  EXPECT_EQ(boxes().size(), 2U);
}

TEST_F(DevicePages, TellWhatTheDeviceIsOrShowItsBytes) {
  device["sysinfo.dat"] = doubles::system_information_bytes("6.62");
  device_page();
  run("cmdInformation");
  EXPECT_THAT(text(), testing::ContainsRegex("Firmware: +6\\.62\n"));
  EXPECT_THAT(text(), HasSubstr("1 day 01:01:01\n"));

  device["sysinfo.dat"] = std::string(72, '\x5a');
  run("cmdInformation");
  EXPECT_THAT(text(), StartsWith("The device answered in a form that is not known here. Its 72 bytes:\n"));
  EXPECT_THAT(text(), HasSubstr("0040  5a 5a 5a 5a 5a 5a 5a 5a"));

  device["msgindexP3.dat"] = std::string("\0\0\xFA\0\0\x0E\xA6\0", 8);
  child<QSpinBox>(*page, "txtPartition").setValue(3);
  run("cmdPartition");
  EXPECT_THAT(text(), testing::ContainsRegex("Recorded: +0 min 8 s\nRoom for recordings: +2 min 0 s"));
}

TEST_F(DevicePages, ShowAndSaveTheLog) {
  device["log"] = "started\xB0\r\nstopped\r\n";
  windows.suite.files.make_folders("C:\\Logs");
  device_page();
  run("cmdGetLog");
  EXPECT_EQ(text(), "started\xC2\xB0\nstopped\n");
  EXPECT_EQ(label("lblAnswer"), "Answer of t&he device (Get Log File):");
  chooser.save = "C:\\Logs\\one";
  click("cmdSaveAnswer");
  EXPECT_EQ(chooser.proposed, "log.txt");
  EXPECT_EQ(files()["C:\\Logs\\one"], device["log"]);

  chooser.save.reset();
  click("cmdGetAndResetLog");  // nothing is reset that has no place to be kept
  EXPECT_EQ(windows.suite.scheduler.scripts.size(), 1U);
  chooser.save = "C:\\Logs\\two";
  run("cmdGetAndResetLog");
  EXPECT_EQ(files()["C:\\Logs\\two"], device["log"]);
  EXPECT_THAT(label("lblDeviceState"), HasSubstr(". Saved in C:\\Logs\\two"));

  chooser.save = "C:\\None\\three";
  run("cmdGetAndResetLog");
  EXPECT_EQ(text(), "started\xC2\xB0\nstopped\n");  // it can still be saved elsewhere
  EXPECT_EQ(label("lblDeviceState"), "Get and Reset Log File: no result");

  windows.suite.ui.answers = {platform::Button::kCancel};
  click("cmdResetLog");
  EXPECT_EQ(windows.suite.scheduler.scripts.size(), 3U);
}

TEST_F(DevicePages, AskBeforeAFileIsSentAndRefuseWhatIsNone) {
  files()["C:\\image"] = std::string(12'345, 'f');
  files()["C:\\empty"] = "";
  device_page();
  const auto refused = [&](const char* path, const char* description) {
    boxes().clear();
    chooser.open = path;
    click("cmdSendFirmware");
    EXPECT_EQ(windows.suite.requests(), "");
    ASSERT_EQ(boxes().size(), 1U);
    EXPECT_THAT(boxes()[0].text, HasSubstr(description));
  };
  refused("C:\\empty", "The firmware cannot be sent.\nThe file is empty.");
  windows.suite.ui.answers = {platform::Button::kCancel};
  refused("C:\\image", "USA_Office - 101?\nC:\\image (12,345 bytes)");

  chooser.open = "C:\\image";
  run("cmdSendCannedMessages", "Send Canned Messages Completed");
  EXPECT_THAT(windows.suite.scheduler.uploads, ElementsAre(files()["C:\\image"]));
  EXPECT_EQ(label("lblDeviceState"), "Send Canned Messages: Completed");
}

// What cannot work for a site is not offered, and says why.
TEST_F(DevicePages, OfferWhatWorksForTheSiteAlone) {
  DevicePage& shown = device_page();
  struct Row {
    const char* firmware;
    const char* card_type;
    bool log, all;
    const char* all_reason;
    const char* site_reason;
  };
  for (const Row& row : {
           Row{"6.62", "NEW", true, false, "not with firmware 6.62", ""},
           Row{"0", "NEW", true, false, "does not tell the site's firmware", ""},
           Row{"5.ca", "OLD", false, false, "", "control card is of the old kind"},
           Row{"5.ca", "NEW", true, true, "", ""},
       }) {
    windows.list_sites({"USA_Office"}, row.firmware, row.card_type);
    shown.reload_sites();
    EXPECT_EQ(child<QPushButton>(shown, "cmdGetLog").isEnabled(), row.log);
    EXPECT_EQ(child<QPushButton>(shown, "cmdAllPartitions").isEnabled(), row.all);
    EXPECT_EQ(child<QLabel>(shown, "lblAllPartitions").isVisible(), *row.all_reason != '\0');
    EXPECT_THAT(label("lblAllPartitions"), HasSubstr(row.all_reason));
    EXPECT_THAT(label("lblSiteProblem"), HasSubstr(row.site_reason));
  }
  windows.suite.scheduler.sends = [](const std::string&) { return "x"; };
  run("cmdAllPartitions");
  EXPECT_THAT(text(), StartsWith("Statistics files: 64\nPartition  1: "));
  child<QComboBox>(*page, "cmbSite").setCurrentIndex(0);
  for (const char* name : {"cmdReadClock", "cmdGetLog", "cmdAllPartitions"})
    EXPECT_FALSE(child<QPushButton>(*page, name).isEnabled()) << name;
}

// A session that was left runs on in the scheduler: the question comes behind the dialog, and only when the
// scheduler says that it runs.
TEST_F(DevicePages, AskWhetherASessionThatWasLeftIsToBeStopped) {
  windows.suite.scheduler.result_file = "";
  device_page();
  const std::string& own = windows.suite.session.job.Name;
  const auto leave = [&](const char* running, platform::Button button) {
    boxes().clear();
    windows.control.log.clear();
    windows.suite.ui.answers = {button};
    const ModalDriver driver({[&](QWidget& dialog) {
      windows.control.now.emplace();
      windows.control.now->running_job = *running == '\0' ? own : running;
      windows.control.now->step = "Fetching log";
      windows.control.now->jobs = {{own, "", protocol::JobState::kWaiting}};
      EXPECT_EQ(boxes().size(), 0U);
      child<QPushButton>(dialog, "cmdCancel").click();
    }});
    click("cmdGetLog");
  };
  leave("Nov1526000000000", platform::Button::kOk);  // another job runs, this one waits
  EXPECT_THAT(boxes(), IsEmpty());
  leave("", platform::Button::kCancel);
  EXPECT_THAT(windows.control.log, IsEmpty());
  leave("", platform::Button::kOk);
  ASSERT_EQ(boxes().size(), 1U);
  EXPECT_EQ(boxes()[0].act, "Stop Session");
  EXPECT_THAT(boxes()[0].detail, HasSubstr(": Fetching log.\n"));
  EXPECT_THAT(windows.control.log, ElementsAre("stop " + own));
}

TEST_F(DevicePages, ListTheMessagesOfAPartition) {
  MessagesPage& messages = open(std::make_unique<MessagesPage>(request, sites));
  device["msgindexP3.dat"] = std::string("\0\0\0\0\0\0\0\0\0\0\0\x0C\0\0\0\x50", 16);
  child<QSpinBox>(messages, "txtPartition").setValue(3);
  const auto listed = [&](const char* result_list) {
    windows.suite.scheduler.result_file = result_list;
    run("cmdViewMessages");
    const auto partitions = column("tblMessages", 0), numbers = column("tblMessages", 1);
    std::string all;
    for (std::size_t row = 0; row < partitions.size(); ++row)
      all += partitions[row] + "/" + numbers[row];
    return all + " " + label("lblMessagesState");
  };
  EXPECT_EQ(listed("completed.sch"), "3/12 1 message in partition 3");
  EXPECT_EQ(listed("error.sch"), " View QVR+/RDN: not done");
}

// The retrieval files into the memory suite, the list reads a real folder.
TEST_F(DevicePages, ListReadAndSearchTheSameLogs) {
  const QTemporaryDir folder;
  adapters::FilesPosix real;
  doubles::MemoryMachine machine;
  machine.special_folders = {{46, adapters::suite_path(folder.path().toStdString())}};
  const environment::FilesAndFolders folders(machine, real);
  const std::string logs = folders.GetSAMELogsFolder();
  ASSERT_TRUE(QDir().mkpath(ui::qt_text(real.native(logs))));
  const auto file = [&](const char* name, const std::string& bytes, int minute) {
    real.replace(logs + name, bytes);
    QFile stored(ui::qt_text(real.native(logs + name)));
    ASSERT_TRUE(stored.open(QIODevice::ReadWrite));
    stored.setFileTime(QDateTime({2026, 11, 15}, {9, minute}), QFileDevice::FileModificationTime);
  };
  file("asame.log", "alpha\r\nBeta\r\nalpha\r\n", 7);
  file("bsame.log", std::string(100, 'x'), 9);
  file("notes.txt", "", 8);

  open(std::make_unique<SameLogsPage>(SameLogsPageParts{request, sites, real, folders}));
  auto& table = child<QTableView>(*page, "tblSameLogs");
  const auto cell = [&](int row, int column) {
    return ui::utf8(table.model()->index(row, column).data().toString());
  };
  ASSERT_EQ(table.model()->rowCount(), 2);
  EXPECT_EQ(cell(0, 0), "bsame.log");
  EXPECT_EQ(cell(1, 2), "2026-11-15 09:07:00");
  table.sortByColumn(1, Qt::AscendingOrder);
  EXPECT_EQ(cell(0, 0), "asame.log");

  table.selectRow(0);
  EXPECT_EQ(text("txtSameLog"), "alpha\nBeta\nalpha\n");
  const auto found = [&](const char* button, const char* state) {
    click(button);
    EXPECT_EQ(label("lblSameLogsState"), state) << button;
  };
  child<QLineEdit>(*page, "txtFindInLog").setText("ALPHA");
  found("cmdFindNextInLog", "Found in line 1.");
  found("cmdFindNextInLog", "Found in line 3.");
  found("cmdFindNextInLog", "Found in line 1.");  // round the end
  child<QLineEdit>(*page, "txtFindInLog").setText("gamma");
  found("cmdFindNextInLog", "\"gamma\" was not found.");

  device["same.log"] = "EAS";
  run("cmdRetrieveSameLog", "Retrieve SAME Log Completed");
  EXPECT_EQ(text("txtSameLog"), "alpha\nBeta\nalpha\n");  // what is read stays
}

TEST(TransferProgressTest, TellsTheStepAndMeasuresIt) {
  session::MemorySuite suite;
  const jobs::SchedulerFiles files(suite.session.run, suite.folders, suite.files);
  base::JobValues job;
  job.Name = "Nov1526120000000";
  doubles::ManualScheduler scheduler;
  protocol::SchedulerStatus& now = scheduler.now.emplace();
  now.running_job = "Nov1526120000001";
  now.step = "Sending firmware";
  now.bytes_done = 5000;
  now.bytes_hinted = 20'000;
  now.jobs = {{job.Name, "Send", protocol::JobState::kWaiting}};
  ui::TransferProgress progress(ui::transfer_source(scheduler, job, files), nullptr);
  progress.show();
  auto& bar = child<QWidget>(progress, "barTransfer");
  const QLabel& line = child<QLabel>(progress, "lblTransfer");
  const auto look = [&] {
    progress.set_running(true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !line.text().isEmpty(); }, 10'000));
    return ui::utf8(line.text());
  };
  const std::string here = "Sending firmware: 5,000 bytes";
  const std::string waits = "Waiting for job Nov1526120000001";
  EXPECT_EQ(look(), waits + ", which is here: " + here + " of about 20,000 bytes");
  now.jobs.push_back({now.running_job, "Send Firmware File", protocol::JobState::kRunning});
  EXPECT_EQ(look(), waits + " (Send Firmware File), which is here: " + here + " of about 20,000 bytes");
  EXPECT_EQ(bar.property("value").toInt() * 4, bar.property("maximum").toInt());
  now.running_job = job.Name;
  now.bytes_hinted = 0;
  EXPECT_EQ(look(), here);
  EXPECT_FALSE(bar.isVisible());
  progress.set_running(false);
  EXPECT_EQ(ui::utf8(line.text()), "");
}

}  // namespace
}  // namespace qvrcom::desktop
