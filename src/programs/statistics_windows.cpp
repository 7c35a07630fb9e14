#include "programs/statistics_windows.h"

#include "ui/uc_stats.h"

namespace qvrcom::programs {

StatisticsWindows::StatisticsWindows(Suite& suite)
    : suite_(suite),
      logs_(suite.ui, suite.files, suite.folders),
      dialogs_({[&suite] { return suite.session.run.SessionStatus == "Error"; },
                [this](QWidget* over) { logs_.show(suite_.session.job.Name, over); }},
               ui::transfer_source(suite.scheduler, suite.session.job)),
      screen_(suite.session_parts(), dialogs_),
      viewer_(components_, suite.files) {
  components_.add(ui::ucStats::kComponentName,
                  [this](QWidget* parent) { return new ui::ucStats(sources_, parent); });
}

}  // namespace qvrcom::programs
