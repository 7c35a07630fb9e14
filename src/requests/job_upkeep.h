#pragma once

#include <string>
#include <vector>

#include "jobs/job_board.h"
#include "platform/machine.h"
#include "platform/scheduler_control.h"
#include "requests/session_request.h"

namespace qvrcom::requests {

// What jobs leave behind: folders that nobody waits for, access codes in them, old logs. Nothing is touched
// while a session runs. Files that their device has been told to delete are brought to safety before their
// folder goes; a box says where they are.
class JobUpkeep {
 public:
  JobUpkeep(const SessionRequestParts& parts, const jobs::JobBoard& board, const platform::Machine& machine,
            platform::SchedulerControl& scheduler)
      : parts_(parts), board_(board), machine_(machine), scheduler_(scheduler), trap_(parts.rules.ui) {}

  enum class Removal {
    kNotDone,  // a message has said why
    kRemoved,
    kUnknown,   // there is no such job
    kInUse,     // it waits for its turn, or runs
    kDoubtful,  // a damaged line may be about it
  };
  // Folder, and lines in the pending lists.
  Removal remove(const std::string& job);

  struct Cleaning {
    bool done = false;              // otherwise a message has said why
    std::vector<std::string> jobs;  // whose folders went: no list named them
    std::size_t logs = 0;           // that were older than LogDays
  };
  Cleaning clean();

  // Empties the access code in the script of every job that has ended, is in no list or stands in a damaged
  // line alone, so that no scheduler runs it. `seen` are the lists
  // as they were just now: when nothing of it has ended, nothing is done.
  void forget_access_codes(const jobs::Board& seen);

  // How long a job's log is kept: user setting LogDays of section Jobs, 1 to 36500, 90 without one.
  int log_days() const;

 private:
  std::vector<std::string> abandoned(const jobs::Board& board) const;
  bool has_foreign_scheduler() const;
  std::vector<std::string> folders_of_ended_jobs(const jobs::Board& board) const;
  void take_off_lists(const std::string& line);
  void discard(const std::string& job);
  std::size_t remove_old_logs();

  SessionRequestParts parts_;
  const jobs::JobBoard& board_;
  const platform::Machine& machine_;
  platform::SchedulerControl& scheduler_;
  platform::Trap trap_;
};

}  // namespace qvrcom::requests
