#include <CLI/CLI.hpp>
#include <QApplication>
#include <QElapsedTimer>
#include <QThread>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <iostream>
#include <string_view>
#include <vector>

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

// Says why a job stays; one that has gone is seen to have.
void remove_job(const std::string& job, requests::JobUpkeep& upkeep, programs::Suite& suite) {
  const auto outcome = upkeep.remove(job).outcome;
  if (requests::is_removed(outcome) || outcome == requests::JobUpkeep::Removal::kNotDone) return;
  suite.ui.show({.text = job + requests::words_of(outcome),
                 .title = platform::kSuiteTitle,
                 .icon = platform::Icon::kWarning});
}

// The main window with its pages, and what they share.
class Desktop {
 public:
  Desktop(programs::Suite& suite, ui::MessageBoxes& boxes)
      : suite_(suite),
        boxes_(boxes),
        windows_(suite),
        request_(windows_.parts().request),
        late_(request_, suite.jobs),
        upkeep_(request_, suite.jobs, suite.machine, suite.scheduler) {
    auto* statistics = add("Stat&istics", new desktop::StatisticsPage(windows_.parts()));
    auto* sites =
        add("Si&tes", new desktop::SitesPage({suite.sites, boxes, suite.files, windows_.chooser()}));
    add("&Jobs", jobs_page());
    auto* device = add("&Device", new desktop::DevicePage({request_, suite.sites, windows_.chooser()}));
    auto* same_logs =
        add("SAME Lo&gs", new desktop::SameLogsPage({request_, suite.sites, suite.files, suite.folders}));
    auto* messages = add("&Messages", new desktop::MessagesPage(request_, suite.sites));
    const auto reload_lists = [=] {
      statistics->reload_sites();
      device->reload_sites();
      same_logs->reload_sites();
      messages->reload_sites();
    };
    QObject::connect(sites, &desktop::SitesPage::sites_changed, &window_, reload_lists);
    windows_.when_sites_change([=] {
      sites->reload();
      reload_lists();
    });
  }

  void show() {
    window_.show();
    QTimer::singleShot(0, &window_, [this] { tell_news(); });
  }

 private:
  template <class Page>
  Page* add(const char* title, Page* page) {
    window_.add_page(QLatin1String(title), page);
    return page;
  }

  desktop::JobsPage* jobs_page() {
    return new desktop::JobsPage(
        {suite_.jobs, suite_.scheduler_files, suite_.scheduler, suite_.programs, suite_.files, suite_.folders,
         boxes_, windows_.logs(),
         [this](const jobs::BoardJob& job) { tell_processed(late_.process(job), suite_); },
         [this](const std::string& job) { remove_job(job, upkeep_, suite_); }});
  }

  void tell_news() {
    const requests::JobAdvice advice{
        "\"Process\" on the page \"Jobs\" takes over what they have fetched.",
        "\"Stop Job...\" on the page \"Jobs\", where the scheduler runs, keeps a job from it."};
    for (const platform::Message& message : requests::look_after_jobs(suite_.jobs, upkeep_, late_, advice))
      boxes_.show(message);
  }

  programs::Suite& suite_;
  ui::MessageBoxes& boxes_;
  programs::StatisticsWindows windows_;
  const requests::SessionRequestParts request_;
  requests::LateResultsRequest late_;
  requests::JobUpkeep upkeep_;
  desktop::MainWindow window_;  // gone before what its pages work with
};

int run_desktop() {
  ui::MessageBoxes boxes;
  programs::Suite suite(boxes);
  if (!desktop::prepare_machine({boxes, suite.machine, suite.files}, suite.set_up(),
                                suite.proposed_folders()))
    return kNotSetUp;
  suite.report_plugin_problems();
  Desktop desktop(suite, boxes);
  desktop.show();
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

// The options that the toolkit takes for itself, as it documents them, with one dash or two.
constexpr const char* kToolkitFlags[] = {"-reverse", "-widgetcount"};
constexpr const char* kToolkitOptions[] = {
    "-display", "-geometry",        "-platform",    "-platformpluginpath", "-platformtheme", "-plugin",
    "-session", "-qwindowgeometry", "-qwindowicon", "-qwindowtitle",       "-style",         "-stylesheet"};
constexpr const char* kToolkitValues[] = {"-style=", "-stylesheet=", "-qmljsdebugger="};

// How many arguments from this one on are the toolkit's: an option that lacks its value is nobody's.
int toolkit_arguments(int left, char** arguments) {
  std::string_view name = arguments[0];
  if (name.starts_with("--")) name.remove_prefix(1);
  const auto is_name = [&](std::string_view known) { return name == known; };
  const auto begins = [&](std::string_view known) { return name.starts_with(known); };
  if (std::ranges::any_of(kToolkitFlags, is_name) || std::ranges::any_of(kToolkitValues, begins)) return 1;
  return left > 1 && std::ranges::any_of(kToolkitOptions, is_name) ? 2 : 0;
}

// What the program's own reading is left with.
std::vector<std::string> own_arguments(int count, char** arguments) {
  std::vector<std::string> own;
  for (int i = 1; i < count;) {
    const int taken = toolkit_arguments(count - i, arguments + i);
    if (taken == 0) own.emplace_back(arguments[i]);
    i += std::max(taken, 1);
  }
  return own;
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
  // All is read before the screen is opened, which a wrong word ends the program without.
  if (const auto end = cli::read_arguments(app, own_arguments(argc, argv), std::cout, std::cerr))
    return static_cast<int>(*end);
  if (!given.picture.empty()) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("qvrcom"));
  return run(given);
}
