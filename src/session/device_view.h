#pragma once

#include "base/session_values.h"
#include "platform/trap.h"
#include "session/business_rules.h"
#include "session/session_frame.h"

namespace qvrcom::session {

// Asks the current site for the message index of the current partition, so that its messages can be listed.
// The scheduler is told of the job alone: no session is shown.
class DeviceView {
 public:
  DeviceView(const BusinessRulesParts& parts, SessionFrame& frame)
      : session_(parts.session), frame_(frame), rules_(frame.rules()), trap_(parts.ui) {}

  // Writes and runs the job of one site, whose folder stands; always at once.
  void retrieve_index();

  // The outcome of its job. How it ended is shown after the last site.
  void Process_ViewQVR();

 private:
  void write();
  void take_index();

  base::Session& session_;
  SessionFrame& frame_;
  BusinessRules& rules_;
  platform::Trap trap_;
};

}  // namespace qvrcom::session
