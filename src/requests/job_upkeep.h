#pragma once

#include <string>
#include <vector>

#include "base/fault.h"
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

  struct Removal {
    enum Outcome {
      kNotDone,  // a message has said why
      kRemoved,
      kLinesDropped,  // it had no folder, and now no line
      kUnknown,       // there is no such job
      kInUse,         // it waits for its turn, or runs
      kDoubtful,      // a damaged line may be about it
    };
    Outcome outcome = kNotDone;
    std::vector<std::string> results;  // suite paths of the files that had come of it before
    std::vector<std::string> lists;    // of the scheduler, which drops its line from them when it starts
  };
  // Folder, and lines in the lists. One that waits is taken out by the scheduler first, which is started for
  // it when none runs.
  Removal remove(const std::string& job);

  // A line of a job that has gone, and what becomes of it.
  struct EndedLine {
    std::string job;
    std::vector<std::string> lists;  // as in Removal
  };
  // A folder that cannot be removed, and why.
  struct StuckFolder {
    std::string job;
    base::Fault fault;
  };
  struct Cleaning {
    bool done = false;                 // otherwise a message has said why
    std::vector<std::string> jobs;     // whose folders went: no list named them
    std::vector<StuckFolder> stuck;    // likewise, but something is in the way
    std::vector<EndedLine> lines;      // of jobs that have neither folder nor index line
    std::vector<std::string> waiting;  // finished jobs that nobody has processed
    std::size_t logs = 0;              // that were older
    int log_days = 0;                  // than that
  };
  Cleaning clean();

  // Empties the access code in the script of every job that no scheduler begins any more: it has ended, has
  // changed its device, is in no list, or stands in a damaged line alone. `seen` are the lists as they were
  // just now: when there is no such job, nothing is done.
  void forget_access_codes(const jobs::Board& seen);

  // The jobs that wait in the job index with nobody waiting for them: the next session, of any site, runs
  // them. None while a session runs. `seen` as above.
  std::vector<jobs::BoardJob> left_waiting(const jobs::Board& seen) const;

  // The jobs that have changed their device, have not ended, and are run by no scheduler: they are never run
  // again, and JobPilot lists them as errors when it starts.
  std::vector<jobs::BoardJob> cut_off(const jobs::Board& seen) const;

 private:
  // How long a job's log is kept: user setting LogDays of section Jobs, 1 to 36500, 90 without one; Fault
  // when it is none.
  int log_days() const;

  std::vector<std::string> abandoned(const jobs::Board& board) const;
  bool has_foreign_scheduler() const;
  bool has_changed_device(const std::string& job) const;
  std::vector<std::string> folders_of_jobs_over(const jobs::Board& board) const;
  void take_out(const std::string& job);
  std::vector<std::string> scheduler_lists(const jobs::BoardJob& job) const;
  void take_off_lists(const std::vector<std::string>& lines);
  Removal remove_unlisted(const jobs::Board& board, const std::string& job);
  std::vector<EndedLine> drop_ended_lines(const jobs::Board& board);
  std::vector<std::string> discard(const std::string& job);
  std::size_t remove_old_logs(int days);

  SessionRequestParts parts_;
  const jobs::JobBoard& board_;
  const platform::Machine& machine_;
  platform::SchedulerControl& scheduler_;
  platform::Trap trap_;
};

}  // namespace qvrcom::requests
