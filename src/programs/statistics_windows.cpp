#include "programs/statistics_windows.h"

#include <QApplication>
#include <QTimer>

#include "desktop/site_dialog.h"
#include "protocol/job_lists.h"
#include "ui/attempt.h"
#include "ui/uc_stats.h"

namespace qvrcom::programs {
namespace {

constexpr int kLook = 100;  // milliseconds

bool failed(const Suite& suite) {
  return suite.session.run.SessionStatus == protocol::kErrorStatus;
}

}  // namespace

StatisticsWindows::StatisticsWindows(Suite& suite)
    : suite_(suite),
      logs_(suite.ui, suite.files, suite.folders),
      dialogs_({[&suite] { return failed(suite) ? suite.ui.reason() : std::string(); },
                [&suite] { return failed(suite); },
                [this](QWidget* over) { logs_.show(suite_.session.job.Name, over); },
                [&suite] { return failed(suite) && session::advice_for(suite.ui.reason()).about_site; },
                [this](QWidget* over) { edit_site(over); }},
               ui::transfer_source(suite.scheduler, suite.session.job, suite.scheduler_files)),
      screen_(suite.session_parts(), dialogs_),
      stopper_(screen_, suite.ui, suite.scheduler, suite.session),
      viewer_(components_, suite.files) {
  components_.add(ui::ucStats::kComponentName,
                  [this](QWidget* parent) { return new ui::ucStats(sources_, parent); });
}

void StatisticsWindows::edit_site(QWidget* over) {
  ui::attempt(suite_.ui, "The site cannot be edited.", [&] {
    for (const sitebook::SiteRecord& site : suite_.sites.list()) {
      if (std::to_string(site.site_id) != suite_.session.site.SiteID) continue;
      if (desktop::edit_stored_site(suite_.sites, suite_.ui, site, over, "access-code")) tell_change();
      return;
    }
    throw base::Fault("It is no longer in the site book.");
  });
}

// Who lists sites may be in the middle of the session's routine until no window lies over it.
void StatisticsWindows::tell_change() {
  QTimer::singleShot(kLook, &context_, [this] {
    if (QApplication::activeModalWidget() != nullptr) return tell_change();
    sites_changed_();
  });
}

}  // namespace qvrcom::programs
