#pragma once

#include <functional>
#include <string>

#include "link/scheduler_link.h"
#include "platform/trap.h"
#include "rules/business_rules.h"
#include "session/session_view.h"

namespace qvrcom::session {

// How one operation ends: what differs in the frame that all outcome routines share.
struct Outcome {
  std::string procedure;  // name of the outcome routine, for its trap
  std::string completed;  // status lines, whole
  std::string error;
  std::string cancelled;
  std::function<void()> process = [] {};  // only after "Completed"
};

// The steps that every operation of the session dialog goes through, whatever it writes and fetches.
class SessionFrame {
 public:
  static constexpr const char* kHint = "To cancel, press the cancel button and stop the session in JobPilot";

  SessionFrame(const rules::BusinessRulesParts& parts, rules::BusinessRules& rules, link::SchedulerLink& link,
               SessionView& view);

  // Status line, and a chance for events.
  void show_step(const std::string& text);
  void set_info(const std::string& text);

  // Empties SessionStatus and the three collected pending-list texts.
  void ClearSessionStatus();

  // The rest of a per-site routine whose script and index line are written: runs the job now and ends it with
  // `outcome`, or hands it to RePilot when it is to run later. A Cancel that came already skips posts and
  // wait; a job that was never posted is removed whole.
  void submit(const Outcome& outcome);

  void WaitForScheduler();

  // Adds every line of a pending list but `job_id`, letter case ignored, to `collected`; a list that is not
  // there is empty.
  void RemoveJobFromList(const std::string& file_name, const std::string& job_id, std::string& collected);

  // The outcome frame without processing, its status lines beginning with the operation's name.
  void ProcessQVRComm(const std::string& operation_name);

  // The frame itself, trapped under the outcome's name.
  void run_outcome(const Outcome& outcome);

 private:
  struct Ending;
  void run_now(const Outcome& outcome);
  void run_later();
  void post_and_wait();
  void finish(const Ending& ending, const Outcome& outcome);
  void take_job_off(const std::string& pending_list);
  bool nothing_posted() const { return link_.posted() == posted_before_; }

  base::Session& session_;
  platform::UserInterface& ui_;
  const platform::Files& files_;
  rules::BusinessRules& rules_;
  link::SchedulerLink& link_;
  SessionView& view_;
  platform::Trap trap_;
};

}  // namespace qvrcom::session
