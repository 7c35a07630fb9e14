#pragma once

#include <QObject>
#include <functional>

#include "adapters/byte_source_posix.h"
#include "desktop/session_logs.h"
#include "desktop/session_stopper.h"
#include "programs/suite.h"
#include "session/session_run.h"
#include "ui/file_chooser.h"
#include "ui/frm_response.h"
#include "ui/frm_view_statistics.h"
#include "ui/uc_statistics_main.h"
#include "ui/visual_components.h"

namespace qvrcom::programs {

// What the statistics control needs beside the suite: session dialog, viewer and file chooser. A host makes
// one and hands parts() to the control.
class StatisticsWindows {
 public:
  explicit StatisticsWindows(Suite& suite);
  StatisticsWindows(const StatisticsWindows&) = delete;
  StatisticsWindows& operator=(const StatisticsWindows&) = delete;

  ui::StatisticsMainParts parts() { return {suite_.request_parts(stopper_), viewer_, chooser_}; }
  const desktop::SessionLogs& logs() const { return logs_; }
  ui::FileChooserQt& chooser() { return chooser_; }
  ui::VisualComponents& components() { return components_; }

  // Called when a site was edited from the session dialog, once that has gone.
  void when_sites_change(std::function<void()> routine) { sites_changed_ = std::move(routine); }

 private:
  void edit_site(QWidget* over);
  void tell_change();

  Suite& suite_;
  adapters::ByteSourcesPosix sources_;
  desktop::SessionLogs logs_;
  ui::ResponseDialogs dialogs_;
  session::SessionRun screen_;
  desktop::SessionStopper stopper_;
  ui::VisualComponents components_;
  ui::StatisticsViewerWindow viewer_;
  ui::FileChooserQt chooser_;
  std::function<void()> sites_changed_ = [] {};
  QObject context_;
};

}  // namespace qvrcom::programs
