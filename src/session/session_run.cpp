#include "session/session_run.h"

namespace qvrcom::session {

void SessionRun::show_modal() {
  const bool all_partitions =
      parts_.rules.session.run.CurrentOperation == operation::kRetrieveResetAllStatistics;
  show([&](frmResponse& dialog) {
    if (all_partitions) dialog.when_activated([&dialog] { dialog.ReceiveResetStat_NewQVR(); });
  });
}

void SessionRun::show_late_outcome() {
  show([](frmResponse& dialog) { dialog.expect_late_outcome(); });
}

void SessionRun::show(const std::function<void(frmResponse&)>& prepare) {
  const std::unique_ptr<SessionWindow> window = windows_.make();
  frmResponse dialog(parts_, *window);
  if (!dialog.Form_Load()) return;
  prepare(dialog);
  window->show_modal(dialog);
  dialog.Form_Unload();
}

}  // namespace qvrcom::session
