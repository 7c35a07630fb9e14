#include "session/session_run.h"

#include <utility>

namespace qvrcom::session {

SessionResult SessionRun::show_modal() {
  const bool all_partitions =
      parts_.rules.session.run.CurrentOperation == operation::kRetrieveResetAllStatistics;
  return show([&](frmResponse& dialog) {
    if (all_partitions) dialog.when_activated([&dialog] { dialog.ReceiveResetStat_NewQVR(); });
  });
}

SessionResult SessionRun::show_late_outcome() {
  return show([](frmResponse& dialog) { dialog.expect_late_outcome(); });
}

SessionResult SessionRun::show(const std::function<void(frmResponse&)>& prepare) {
  const std::unique_ptr<SessionWindow> window = windows_.make();
  frmResponse dialog(parts_, *window);
  if (!dialog.Form_Load()) return {};
  prepare(dialog);
  window->show_modal(dialog);
  dialog.Form_Unload();
  return std::move(dialog.result());
}

}  // namespace qvrcom::session
