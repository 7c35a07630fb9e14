#pragma once

#include <string>

#include "base/session_values.h"
#include "platform/scheduler_control.h"
#include "platform/user_interface.h"
#include "session/session_view.h"

namespace qvrcom::desktop {

inline constexpr const char* kSchedulerSilent = "A scheduler is running, but it does not answer.";

// Stops a job in the scheduler, or says in a box why that cannot be.
void stop_job(platform::UserInterface& ui, platform::SchedulerControl& scheduler, const std::string& job);

// The session dialog. When it was left while its session runs on in the scheduler, the user is asked whether
// that is to be stopped, too; a scheduler that tells nothing of its sessions is left alone.
class SessionStopper : public session::SessionScreen {
 public:
  SessionStopper(session::SessionScreen& screen, platform::UserInterface& ui,
                 platform::SchedulerControl& scheduler, const base::Session& session)
      : screen_(screen), ui_(ui), scheduler_(scheduler), session_(session) {}

  session::SessionResult show_modal() override;
  session::SessionResult show_late_outcome() override { return screen_.show_late_outcome(); }

 private:
  void offer_to_stop();

  session::SessionScreen& screen_;
  platform::UserInterface& ui_;
  platform::SchedulerControl& scheduler_;
  const base::Session& session_;
};

}  // namespace qvrcom::desktop
