#include "session/session_run.h"

namespace qvrcom::session {

void SessionRun::show_modal() {
  const std::unique_ptr<SessionWindow> window = windows_.make();
  frmResponse dialog(parts_, *window);
  if (!dialog.Form_Load()) return;
  if (parts_.rules.session.run.CurrentOperation == operation::kRetrieveResetAllStatistics) {
    dialog.when_activated([&dialog] { dialog.ReceiveResetStat_NewQVR(); });
  }
  window->show_modal(dialog);
  dialog.Form_Unload();
}

}  // namespace qvrcom::session
