#include <CLI/CLI.hpp>
#include <QApplication>
#include <QElapsedTimer>
#include <QThread>
#include <QTimer>
#include <cstdio>
#include <iostream>

#include "base/fault.h"
#include "cli/arguments.h"
#include "desktop/device_page.h"
#include "desktop/first_start.h"
#include "desktop/jobs_page.h"
#include "desktop/main_window.h"
#include "desktop/messages_page.h"
#include "desktop/same_logs_page.h"
#include "desktop/sites_page.h"
#include "desktop/statistics_page.h"
#include "programs/statistics_windows.h"
#include "requests/job_news.h"
#include "ui/attempt.h"
#include "ui/message_boxes.h"
#include "ui/uc_stats.h"
#include "ui/widget_text.h"

namespace {

using namespace qvrcom;

enum ExitCode { kDone = 0, kFailed = 1, kNotSetUp = 3 };

constexpr int kPictureLimit = 30'000;  // milliseconds for a file to be read

// Native paths; empty where none was given.
struct Arguments {
  std::string picture;
  std::string csv;
};

int complain(const std::string& text, ExitCode code) {
  std::fprintf(stderr, "%s\n", text.c_str());
  return code;
}

// Draws the viewer with a file into a picture, as it would stand on the screen.
int write_picture(const Arguments& given) {
  const adapters::ByteSourcesPosix sources;
  const adapters::FilesPosix files;
  const std::string csv_path = files.from_native(given.csv);
  if (files.folder_exists(csv_path))
    return complain("\"" + given.csv + "\" is a folder. Name a statistics file in it.", kFailed);
  if (!files.file_exists(csv_path)) return complain("There is no file \"" + given.csv + "\".", kFailed);
  ui::VisualComponents components;
  ui::ucStats* grid = nullptr;
  components.add(ui::ucStats::kComponentName, [&](QWidget* parent) {
    grid = new ui::ucStats(sources, parent);
    return grid;
  });
  ui::frmViewStatistics viewer(components, files);
  viewer.hand_over(csv_path);
  viewer.show();
  QElapsedTimer taken;
  taken.start();
  do {
    QCoreApplication::processEvents();
    QThread::msleep(5);
  } while (grid->busy() && taken.elapsed() < kPictureLimit);
  if (!viewer.grab().save(QString::fromStdString(given.picture)))
    return complain("The picture \"" + given.picture + "\" cannot be written.", kFailed);
  return kDone;
}

// Says where the files are that came of a finished job.
void tell_processed(const requests::LateResultsAnswer& answer, programs::Suite& suite) {
  std::string files;
  for (const std::string& file : answer.files)
    files += (files.empty() ? "" : "\n") + suite.files.native(file);
  if (files.empty()) return;
  suite.ui.show({.text = "What the job has fetched has been taken over.",
                 .title = platform::kSuiteTitle,
                 .icon = platform::Icon::kInformation,
                 .detail = files});
}

int run_desktop() {
  ui::MessageBoxes boxes;
  programs::Suite suite(boxes);
  if (!desktop::prepare_machine({boxes, suite.machine, suite.files}, suite.set_up(),
                                suite.proposed_folders()))
    return kNotSetUp;
  suite.report_plugin_problems();

  programs::StatisticsWindows windows(suite);
  desktop::MainWindow window;
  auto* statistics = new desktop::StatisticsPage(windows.parts());
  window.add_page(QStringLiteral("Stat&istics"), statistics);
  auto* sites = new desktop::SitesPage({suite.sites, boxes, suite.files, windows.chooser()});
  window.add_page(QStringLiteral("Si&tes"), sites);
  const requests::SessionRequestParts request = windows.parts().request;
  requests::LateResultsRequest late(request, suite.jobs);
  requests::JobUpkeep upkeep(request, suite.jobs, suite.machine, suite.scheduler);
  window.add_page(
      QStringLiteral("&Jobs"),
      new desktop::JobsPage({suite.jobs, suite.scheduler_files, suite.scheduler, suite.programs, suite.files,
                             suite.folders, boxes, windows.logs(),
                             [&](const jobs::BoardJob& job) { tell_processed(late.process(job), suite); },
                             [&](const std::string& job) { upkeep.remove(job); }}));
  auto* device = new desktop::DevicePage({request, suite.sites, windows.chooser()});
  window.add_page(QStringLiteral("&Device"), device);
  auto* same_logs = new desktop::SameLogsPage({request, suite.sites, suite.files, suite.folders});
  window.add_page(QStringLiteral("SAME Lo&gs"), same_logs);
  auto* messages = new desktop::MessagesPage(request, suite.sites);
  window.add_page(QStringLiteral("&Messages"), messages);
  const auto reload_lists = [=] {
    statistics->reload_sites();
    device->reload_sites();
    same_logs->reload_sites();
    messages->reload_sites();
  };
  QObject::connect(sites, &desktop::SitesPage::sites_changed, &window, reload_lists);
  windows.when_sites_change([=] {
    sites->reload();
    reload_lists();
  });
  window.show();
  QTimer::singleShot(0, &window, [&] {
    const std::string advice = "\"Process\" on the page \"Jobs\" takes over what they have fetched.";
    for (const platform::Message& message : requests::look_after_jobs(suite.jobs, upkeep, late, advice))
      boxes.show(message);
  });
  return QApplication::exec();
}

int run(const Arguments& given) {
  int code = kNotSetUp;
  if (given.picture.empty()) {
    ui::MessageBoxes boxes;
    ui::attempt(boxes, "QVRCOM+ cannot be used on this PC.", [&] { code = run_desktop(); });
    return code;
  }
  if (const auto fault = ui::fault_of([&] { code = write_picture(given); }))
    return complain(ui::sentence_of(*fault), kFailed);
  return code;
}

}  // namespace

int main(int argc, char** argv) {
  Arguments given;
  CLI::App app("The desktop of QVRCOM+.", "qvrcom");
  app.set_version_flag("-v,--version", "qvrcom " QVRCOM_VERSION);
  CLI::Option* picture =
      app.add_option("--picture", given.picture, "Write a picture (PNG) of the statistics viewer and end.")
          ->type_name("FILE");
  CLI::Option* view =
      app.add_option("--view", given.csv, "The statistics file that the picture shows.")->type_name("CSV");
  picture->needs(view);
  view->needs(picture);
  for (CLI::Option* option : {picture, view})
    cli::refuse_empty(*option, cli::kNamesNoFile);
  const auto read = [&] { return cli::read_arguments(app, {argv + 1, argv + argc}, std::cout, std::cerr); };

  // Two readings: the toolkit takes what is its own out of the arguments when the screen is opened, which
  // help, version and a picture do without. What is left over then is nobody's.
  app.allow_extras();
  if (const auto end = read()) return static_cast<int>(*end);
  if (!given.picture.empty()) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("qvrcom"));
  app.allow_extras(false);
  if (const auto end = read()) return static_cast<int>(*end);
  return run(given);
}
