#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "platform/scheduler_control.h"
#include "platform/trap.h"
#include "protocol/job_lists.h"
#include "session/business_rules.h"
#include "session/dialog_face.h"
#include "session/file_rescue.h"
#include "session/scheduler_link.h"
#include "session/session_view.h"

namespace qvrcom::session {

// What is left of a completed job once its files have been processed.
struct Remainder {
  bool keeps_job = false;                  // its folder and its pending line: nothing has come of its files
  bool undecoded = false;                  // something arrived that could not be made use of
  std::vector<std::string> accounts = {};  // whose; all when it is empty
  RescueWhat what = RescueWhat::kAsTheyCame;
};

// How one operation ends: what differs in the frame that all outcome routines share.
struct Outcome {
  std::string procedure;  // name of the outcome routine, for its trap
  std::string completed;  // status lines, whole; an empty one is not shown
  std::string error;
  std::string cancelled;

  std::function<Remainder()> process = [] { return Remainder{}; };  // only after "Completed"
  bool keeps_folder = false;  // whatever happens: somebody else removes it
};

// How a job is run whose script and index line are written.
struct JobRun {
  std::function<void()> outcome_routine;
  std::string step = "Communicating with QVR+/RDN";
  bool quiet = false;  // the scheduler hears of the job alone, not of its session
};

// The steps that every operation of the session dialog goes through, whatever it writes and fetches.
class SessionFrame {
 public:
  static constexpr const char* kHint = "To cancel, press the cancel button and stop the session in JobPilot";

  SessionFrame(const BusinessRulesParts& parts, SchedulerLink& link, platform::SchedulerControl& control,
               SessionView& view);

  // Sets the status line and gives events a chance.
  void show_step(const std::string& text);

  // Empties SessionStatus and the three collected pending-list texts.
  void ClearSessionStatus();

  // The rest of a per-site routine whose script and index line are written: runs the job now and ends it with
  // its outcome routine, or hands it to RePilot when it is to run later. A Cancel that came already skips
  // posts and wait. A job that was never posted leaves nothing behind. Fault when the index does not hold the
  // job.
  void submit(const JobRun& job);
  void run_now(const JobRun& job);

  void WaitForScheduler();

  // The outcome frame, trapped under the outcome's name. What the job has deleted on its device and could not
  // make use of is brought to safety before its folder goes, and a box says where it is; while that fails the
  // job stays.
  void run_outcome(const Outcome& outcome);

  // Status lines that begin with the operation's name.
  static Outcome name_first(const std::string& procedure, const std::string& operation_name);

  // The frame without processing.
  void ProcessQVRComm(const std::string& operation_name);

  DialogFace& face() { return face_; }
  BusinessRules& rules() { return rules_; }
  SessionResult& result() { return result_; }  // filled by the outcome routines

 protected:
  bool posted_ = false;   // the job at hand has been told to the scheduler
  bool is_late_ = false;  // nobody waited for the job: a scheduler that has gone is not started for it

 private:
  struct Farewell;
  static const Farewell kFarewells[3];

  void run_later();
  void post_and_wait(bool quiet);
  void finish(const protocol::ResultList& list, const Outcome& outcome);
  std::string kept_files() const;
  bool rescue(const Remainder& remainder);
  void forget(const protocol::ResultList& list);

  BusinessRulesParts parts_;
  base::Session& session_;
  platform::UserInterface& ui_;
  BusinessRules rules_;
  SchedulerLink& link_;
  platform::SchedulerControl& control_;
  DialogFace face_;
  SessionResult result_;
  platform::Trap trap_;
  std::array<std::string, 3> collected_;  // pending lists without the job, one per ending
};

}  // namespace qvrcom::session
