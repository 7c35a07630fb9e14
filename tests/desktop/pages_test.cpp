#include <QAccessible>
#include <QDir>
#include <QSignalSpy>
#include <QTemporaryFile>

#include "adapters/database_qt.h"
#include "desktop/first_start.h"
#include "desktop/jobs_page.h"
#include "desktop/list_watch.h"
#include "desktop/main_window.h"
#include "desktop/page_test.h"
#include "desktop/site_dialog.h"
#include "desktop/site_picker.h"
#include "desktop/sites_page.h"
#include "desktop/statistics_page.h"
#include "desktop/tables.h"
#include "desktop/text_window.h"
#include "doubles/settable_machine.h"
#include "protocol/script_grammar.h"

namespace qvrcom::desktop {
namespace {

// The pages on real files and a real database in a folder of their own.
struct PagesTest : PageTest {
  environment::MachineFolders machine_folders() const {
    const std::string root = adapters::suite_path(folder.path().toStdString());
    return {root + "\\Data", root + "\\Docs", root + "\\App"};
  }
  bool prepare() {
    return prepare_machine({ui, machine, files}, {machine, machine, files, engine}, machine_folders());
  }
  QString path(const char* name) const { return folder.filePath(QLatin1String(name)); }
  void write(const QString& to, const std::string& text) { files.replace(ui::utf8(to), text); }
  SitesPage& sites_page() {
    return open(std::make_unique<SitesPage>(SitesPageParts{sites, ui, files, chooser}));
  }

  QTemporaryDir folder;
  adapters::FilesPosix files;
  adapters::QtDatabaseEngine engine{files};
  doubles::SettableMachine machine;
  doubles::RecordingUserInterface ui;
  environment::FilesAndFolders folders{machine, files};
  environment::DatabaseConnection connection{engine, folders};
  sitebook::SiteBook sites{connection};
  ui::FileChooserQt chooser{folder.path()};

  base::RunValues run;
  jobs::SchedulerFiles scheduler_files{run, folders, files};
  jobs::JobBoard board{scheduler_files};
  doubles::ManualScheduler scheduler;
  doubles::MemoryPrograms programs;
  SessionLogs logs{ui, files, folders};
  JobsPageParts jobs_parts() {
    return {board,
            scheduler_files,
            scheduler,
            programs,
            files,
            folders,
            ui,
            logs,
            [this](const jobs::BoardJob& job) { scheduler.log.push_back("process " + job.job); },
            [this](const std::string& job) { scheduler.log.push_back("remove " + job); }};
  }
};

TEST_F(PagesTest, SetsAFreshMachineUpOnceAndPutsBackWhatHasGone) {
  ui.answers = {platform::Button::kCancel};
  EXPECT_FALSE(prepare());
  EXPECT_THAT(QDir(folder.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), IsEmpty());

  EXPECT_TRUE(prepare());
  EXPECT_EQ(ui.messages.size(), 3U);
  EXPECT_TRUE(prepare());
  EXPECT_EQ(ui.messages.size(), 3U);

  const std::string database = folders.GetDatabaseFolder() + "NewDB.mdb";
  files.remove(database);
  ui.answers = {platform::Button::kCancel};
  EXPECT_TRUE(prepare());
  EXPECT_FALSE(files.file_exists(database));
  EXPECT_TRUE(prepare());
  EXPECT_TRUE(files.file_exists(database));
}

TEST_F(PagesTest, AddsEditsAndDeletesSites) {
  prepare();
  SitesPage& shown = sites_page();
  QSignalSpy changes(&shown, &SitesPage::sites_changed);
  {
    const ModalDriver driver({[](QWidget& dialog) {
      auto& reasons = child<QLabel>(dialog, "lblReasons");
      const auto fill = [&](const char* field, const char* text) {
        child<QLineEdit>(dialog, field).setText(QString::fromUtf8(text));
      };
      fill("field-name", "a;b");
      EXPECT_FALSE(reasons.text().isEmpty());
      press(dialog, Qt::Key_Return);  // OK waits
      EXPECT_TRUE(dialog.isVisible());
      fill("field-name", "Büro");
      fill("field-id", "101");
      child<QComboBox>(dialog, "field-method").setCurrentIndex(2);
      EXPECT_EQ(reasons.text(), "");
      press(dialog, Qt::Key_Return);
    }});
    click("cmdAddSite");
  }
  ASSERT_EQ(sites.list().size(), 1U);
  EXPECT_EQ(sites.list()[0].name, "Büro");
  EXPECT_EQ(sites.list()[0].method, "1");
  EXPECT_EQ(sites.list()[0].lan, std::nullopt);

  child<QTableView>(shown, "tblSites").selectRow(0);
  {
    const ModalDriver driver({[](QWidget& dialog) {
      child<QLineEdit>(dialog, "field-access-code").setText("geheim");
      press(dialog, Qt::Key_Return);
    }});
    click("cmdEditSite");
  }
  EXPECT_EQ(sites.list()[0].access_code, "geheim");
  const QAbstractItemModel& cells = *child<QTableView>(shown, "tblSites").model();
  EXPECT_FALSE(cells.index(0, 6).data().toString().contains("geheim"));

  child<QTableView>(shown, "tblSites").selectRow(0);
  ui.answers = {platform::Button::kCancel, platform::Button::kOk};
  click("cmdDeleteSite");
  EXPECT_EQ(sites.list().size(), 1U);
  click("cmdDeleteSite");
  EXPECT_THAT(sites.list(), IsEmpty());
  EXPECT_EQ(changes.count(), 3);
}

TEST_F(PagesTest, ImportsAllSitesOrTellsWhyNone) {
  prepare();
  sites_page();
  const auto import = [&](const char* text, std::vector<ModalDriver::Step> steps = {}) {
    write(path("sites.csv"), text);
    steps.insert(steps.begin(), [this](QWidget& dialog) {
      child<QLineEdit>(dialog, "fileNameEdit").setText(path("sites.csv"));
      press(dialog, Qt::Key_Return);
    });
    const ModalDriver driver(std::move(steps));
    click("cmdImportSites");
  };
  import("name,id,access-code\r\nOne,1,geheim\r\nTwo,2,\r\n");
  const auto report_is_read = [](QWidget& report) {
    EXPECT_TRUE(child<QPlainTextEdit>(report, "text").toPlainText().contains("Line 3: "));
    press(report, Qt::Key_Escape);
  };
  import("name,id\r\nThree,3\r\nFo;ur,4\r\n", {report_is_read});
  EXPECT_EQ(sites.list().size(), 2U);
  EXPECT_EQ(label("lblSitesState"), "2 sites");
  ui.answers = {platform::Button::kCancel, platform::Button::kOk};
  for (const char* name : {"One", "Uno"}) {
    import("name,id\r\nUno,1\r\n");
    EXPECT_EQ(sites.find({"1"})[0].name, name);
  }
}

TEST_F(PagesTest, ExportsToAPrivateFileAndAsksAboutTheAccessCodes) {
  prepare();
  sitebook::SiteRecord site;
  site.name = "One";
  site.access_code = "geheim";
  sites.add(site);
  sites_page();
  ui.messages.clear();
  ui.answers = {platform::Button::kCancel, platform::Button::kNo, platform::Button::kYes};
  click("cmdExportSites");  // no file is asked for
  ASSERT_EQ(ui.messages.size(), 1U);
  EXPECT_THAT(ui.messages[0].text, StartsWith("Shall the file hold the access codes of 1 site?"));
  write(path("out.csv"), "open to everybody");
  for (const bool held : {false, true}) {
    const ModalDriver driver({[&](QWidget& dialog) {
                                child<QLineEdit>(dialog, "fileNameEdit").setText(path("out.csv"));
                                press(dialog, Qt::Key_Return);
                              },
                              [](QWidget& overwrite) {
                                for (auto* each : overwrite.findChildren<QPushButton*>()) {
                                  if (each->text().contains("Overwrite")) each->click();
                                }
                              }});
    click("cmdExportSites");
    EXPECT_EQ(files.read(ui::utf8(path("out.csv"))).find("geheim") != std::string::npos, held);
    EXPECT_FALSE(QFile::permissions(path("out.csv")) & (QFile::ReadGroup | QFile::ReadOther));
  }
}

TEST_F(PagesTest, SaysWhyTheSiteBookCannotBeUsed) {
  prepare();
  const std::string database = folders.GetDatabaseFolder() + "NewDB.mdb";
  const std::string copy = files.read(database);
  files.replace(database, "no database");
  SitesPage& shown = sites_page();
  EXPECT_THAT(label("lblSitesState"), StartsWith("The site book cannot be used. "));
  for (const char* name : {"cmdAddSite", "cmdEditSite", "cmdDeleteSite", "cmdImportSites", "cmdExportSites"})
    EXPECT_FALSE(button(name).isEnabled()) << name;
  int told = 0;
  QObject::connect(&shown, &SitesPage::sites_changed, &shown, [&] { ++told; });
  files.replace(database, copy);
  click("cmdReloadSites");
  EXPECT_EQ(label("lblSitesState"), "0 sites");
  EXPECT_EQ(told, 1) << "the other pages have lists of sites, too";
}

// As when another program edits it, or its folder goes and comes back.
TEST_F(PagesTest, FollowTheSiteBookAndKeepWhatIsChosen) {
  prepare();
  sitebook::SiteRecord site;
  for (const char* name : {"Depot", "Office"}) {
    site.name = name;
    site.site_id = sites.add(site);
  }
  SitesPage& shown = sites_page();
  auto& table = child<QTableView>(shown, "tblSites");
  table.selectRow(1);
  SitePicker picker(sites, SitePicker::Asks::kSite, nullptr);
  picker.show();
  child<QComboBox>(picker, "cmbSite").setCurrentIndex(2);
  QSignalSpy chosen(&picker, &SitePicker::chosen), told(&shown, &SitesPage::sites_changed);
  const auto come_back = [&] {
    for (QWidget* each : {static_cast<QWidget*>(&shown), static_cast<QWidget*>(&picker)}) {
      each->hide();
      each->show();
    }
  };
  const std::string database = folders.GetDatabaseFolder() + "NewDB.mdb";
  const std::string copy = files.read(database);
  ui.messages.clear();
  files.replace(database, "no database");
  come_back();
  come_back();
  EXPECT_THAT(ui.messages, IsEmpty());
  EXPECT_FALSE(picker.usable());
  EXPECT_THAT(ui::utf8(child<QLabel>(picker, "lblSiteProblem").text()), HasSubstr("cannot be used"));
  files.replace(database, copy);
  sitebook::SiteRecord newer = site;
  newer.firmware = "6.62";
  sites.edit(site, newer);
  QEvent activated(QEvent::WindowActivate);
  QApplication::sendEvent(&picker, &activated);
  QApplication::processEvents();
  EXPECT_EQ(picker.site()->firmware, "6.62");
  come_back();
  EXPECT_EQ(table.selectionModel()->currentIndex().row(), 1);
  EXPECT_EQ(told.count(), 1);
  ASSERT_EQ(chosen.count(), 2);
  EXPECT_FALSE(chosen[0][0].toBool() || chosen[1][0].toBool()) << "it is the same site";
}

TEST_F(PagesTest, FollowsTheJobListsAndStopsAJob) {
  prepare();
  const auto line = [&](const std::string& job) {
    return "46341.5;15/11/2026 12:00:00^Retrieve^Office^101^46341.5^^^1^;" + scheduler_files.path(job) +
           "\\" + job + ".scr;\r\n";
  };
  write(ui::qt_text(scheduler_files.path("index.sch")), line("Nov1526120000001") + line("Nov1526120000002"));
  JobsPage& jobs = open(std::make_unique<JobsPage>(jobs_parts()));
  auto& table = child<QTableView>(jobs, "tblJobs");
  const auto cells = [&](int number) { return column("tblJobs", number); };
  const auto state = [&](const char* name) { return button(name).isEnabled(); };
  const auto click_on = [&](const char* name, int row) {
    table.selectRow(row);
    click(name);
  };
  EXPECT_THAT(cells(1), ElementsAre("Waiting", "Waiting"));
  table.selectRow(1);
  EXPECT_EQ(label("lblJobObstacles"),
            "Stop Job: no scheduler answers that could stop it. Process, Remove: it has not ended yet.");
  EXPECT_FALSE(state("cmdStopJob"));

  write(ui::qt_text(scheduler_files.path("error.sch")), line("Nov1526120000001"));
  scheduler.now.emplace();
  scheduler.now->jobs = {{"Nov1526120000002", "Retrieve", protocol::JobState::kRunning}};
  jobs.look();
  EXPECT_THAT(cells(1), ElementsAre("Error", "Running"));
  EXPECT_THAT(cells(6), ElementsAre("error.sch", ""));
  click("cmdStopJob");  // the row is still selected
  click_on("cmdStopScheduler", 1);
  EXPECT_THAT(scheduler.log, ElementsAre("stop Nov1526120000002", "stop"));
  click_on("cmdStartScheduler", 1);
  EXPECT_THAT(programs.started, ElementsAre(folders.GetAppPath() + "JobPilot.exe"));
  scheduler.silent = true;
  jobs.look();
  EXPECT_EQ(label("lblScheduler"), "A scheduler is running, but it does not answer.");
  EXPECT_FALSE(state("cmdStartScheduler"));

  // A session that was left: its script alone tells what it is.
  protocol::ScriptHeader header;
  header.site_name = "Depot";
  header.site_id = "102";
  const std::string left = scheduler_files.path("Jan0127120000000");
  files.make_folder(left);
  files.replace(left + "\\Jan0127120000000.scr",
                protocol::header_text(header, protocol::ScriptKind::kTransfer) + "\r\nFTPDISCONNECT;\r\n");
  scheduler.now.emplace().running_job = "Jan0127120000000";
  click_on("cmdRefreshJobs", 1);
  EXPECT_THAT(cells(1), ElementsAre("Error", "Waiting", "Running"));
  EXPECT_EQ(cells(3)[2], "Depot - 102");
  table.sortByColumn(0, Qt::DescendingOrder);  // January 2027 before November 2026
  scheduler.now->running_job.clear();
  files.make_folder(scheduler_files.path("Nov1526120000001"));
  click_on("cmdRefreshJobs", 0);
  EXPECT_THAT(cells(1), ElementsAre("Left behind", "Waiting", "Error"));
  scheduler.log.clear();
  click_on("cmdRemoveJob", 0);
  EXPECT_FALSE(state("cmdProcessJob"));
  EXPECT_EQ(label("lblJobObstacles"),
            "Stop Job: it neither runs nor waits. Process: no list tells how it ended.");
  click_on("cmdProcessJob", 2);
  EXPECT_EQ(label("lblJobObstacles"), "Stop Job: it neither runs nor waits.");
  EXPECT_THAT(scheduler.log, ElementsAre("remove Jan0127120000000", "process Nov1526120000001"));
  click_on("cmdOpenJobLog", 1);
  EXPECT_FALSE(state("cmdRemoveJob"));
  EXPECT_THAT(ui.messages.back().text, HasSubstr("has written no log"));
}

TEST(ListWatchTest, LooksAgainAfterAFileWasJustWritten) {
  QTemporaryFile file;
  ASSERT_TRUE(file.open());
  const QDateTime written = QFileInfo(file.fileName()).lastModified();
  auto changed = [&, watch = ListWatch()](qint64 milliseconds) mutable {
    return watch.changed({file.fileName(), "/missing"}, written.addMSecs(milliseconds));
  };
  EXPECT_TRUE(changed(0) && changed(1000) && changed(3000));
  EXPECT_FALSE(changed(4000));
}

// Whatever can have the focus has a name for those who cannot see it, no mnemonic is there twice among what
// is in sight together, and every colour is the palette's.
TEST_F(PagesTest, NamesEveryElementAndTakesItsColoursFromThePalette) {
  prepare();
  MemoryWindows control({"USA_Office"});
  MainWindow main;
  main.add_page("Stat&istics", new StatisticsPage(control.parts()));
  main.add_page("Si&tes", new SitesPage({sites, ui, files, chooser}));
  main.add_page("&Jobs", new JobsPage(jobs_parts()));
  const requests::SessionRequestParts request = control.parts().request;
  main.add_page("&Device", new DevicePage({request, sites, chooser}));
  main.add_page("SAME Lo&gs", new SameLogsPage({request, sites, files, folders}));
  main.add_page("&Messages", new MessagesPage(request, sites));
  SiteDialog site(
      "Edit Site", {}, [](const auto&) { return std::vector<sitebook::SiteProblem>(); }, nullptr);
  ui::ResponseDialog response({}, nullptr, [] { return requests::SessionProgress{{}, {}, "Sending", 1, 2}; });
  TextWindow text("Log", "line", nullptr);
  const auto check = [](QWidget& window) {
    QStringList mnemonics;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
      EXPECT_TRUE(widget->styleSheet().isEmpty()) << widget->objectName().toStdString();
      EXPECT_EQ(widget->palette().resolveMask(), 0U) << widget->objectName().toStdString();
      if (!widget->isVisible()) continue;
      const QAccessibleInterface* face = QAccessible::queryAccessibleInterface(widget);
      if (widget->focusPolicy() != Qt::NoFocus && face != nullptr) {
        EXPECT_FALSE(face->text(QAccessible::Name).isEmpty())
            << widget->metaObject()->className() << " " << widget->objectName().toStdString();
      }
      const QKeySequence key = QKeySequence::mnemonic(widget->property("text").toString());
      if (key.isEmpty()) continue;
      EXPECT_FALSE(mnemonics.contains(key.toString())) << ui::utf8(key.toString());
      mnemonics += key.toString();
    }
  };
  main.show();
  for (int index = 0; index < 6; ++index) {
    main.show_page(index);
    check(main);
  }
  for (QWidget* window : std::initializer_list<QWidget*>{&site, &response, &text}) {
    window->show();
    check(*window);
    window->hide();
  }
}

// Each value stands before the next one.
TEST(ValueOrderTest, PutsValuesInOrderAndNamesAsTheLocaleDoes) {
  const QVariant rows[][2] = {
      {QVariant(), 0},
      {QString(), "a"},
      {9, 10},
      {qulonglong(4'000'000'000), 5'000'000'000.0},
      {10, "1"},
      {QDateTime({2026, 11, 30}, {9, 0}), QDateTime({2027, 1, 1}, {8, 0})},
      {name_value("Nov3026235959000"), name_value("Jan0127000000000")},
      {name_value("Nov3026235959001same.log"), name_value("Nov3026235959002same.log")},
      {name_value("Jan0127000000000"), name_value("Nov day")},
      {"Office 9", "office 10"},
      {"10.0.0.5", "10.0.0.12"},
      {"\u00c4pfel", "Zebra"},
      {"alpha", "Beta"},
  };
  const ValueOrder order;
  for (const auto& [left, right] : rows) {
    EXPECT_TRUE(order.less(left, right)) << ui::utf8(left.toString()) << ", " << ui::utf8(right.toString());
    EXPECT_FALSE(order.less(right, left)) << ui::utf8(left.toString()) << ", " << ui::utf8(right.toString());
  }
}

}  // namespace
}  // namespace qvrcom::desktop
