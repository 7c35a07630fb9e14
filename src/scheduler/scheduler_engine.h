#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "platform/clock.h"
#include "platform/files.h"
#include "platform/message_channel.h"
#include "platform/scheduler_control.h"
#include "scheduler/due_lines.h"
#include "scheduler/result_lists.h"
#include "scheduler/run_log.h"
#include "scheduler/run_thread.h"
#include "scheduler/scheduler_settings.h"

namespace qvrcom::scheduler {

// What the engine works with.
struct EngineParts {
  platform::Files& files;
  platform::Clock& clock;
  platform::MessageChannel& channel;
  RunWays ways;
  std::string scheduler_folder;  // suite path, ends in a backslash
  std::string logs_folder;       // likewise
  SchedulerSettings settings;
  // Called when `tick` has something to do, on the session's thread too; it only wakes the program.
  std::function<void()> wake;
};

// JobPilot without its process: told of jobs, it runs the due lines of "index.sch" one session at a time,
// lists each in one of its result files and answers. All members belong to one thread; a session runs on
// another. No member waits for a session, or takes long over a long index: what is left is done by later
// ticks.
class SchedulerEngine {
 public:
  explicit SchedulerEngine(EngineParts parts);

  // To be called once, at the program's start: drops the result lines of jobs that have gone, and lists the
  // jobs that an earlier run was cut off in and that must not run again. Starts none; jobs that are submitted
  // wait until later ticks are through with this.
  void list_interrupted();

  // A protocol::SchedulerRequest as the message channel brings it. Any other code is logged and has no
  // effect.
  void request(std::int64_t code);

  // Takes what the session's thread reported, lists a finished job and goes on through the index.
  void tick();

  // An answer is repeated to the dialog from a job's end until a request 2 or 6, and a line that could not be
  // listed is tried again: `repeat` every 250 ms while `repeating`.
  bool answering() const { return answering_; }
  bool repeating() const { return answering_ || lists_.has_kept(); }
  void repeat();

  bool running() const { return session_ != nullptr; }

  // Nothing is started any more, and a running session is told to end: when it has, a tick lists its job as
  // cancelled.
  void stop();

  // Lists the running job as cancelled and leaves its session to itself; false when none runs. Only for a
  // program that ends itself at once and destroys nothing that the session uses.
  bool leave_session_behind();

  platform::StopOutcome stop_job(const std::string& job_name);

  // Without version and process, which the program knows.
  protocol::SchedulerStatus status();

 private:
  struct Running {
    std::string line;
    std::string job;
    std::string step;
    std::uint64_t hint = 0;
    bool told_to_end = false;
  };

  void unknown_request(std::int64_t code);
  void jobs_submitted();
  void results_taken();
  void drop_gone();
  void show_session();
  void session_over();

  std::string read_index() const;  // "" when it is missing
  void take_index();
  bool index_is_known() const;
  void look_for_work();
  void look_back();
  void end_look();
  void consider(std::size_t number);
  void start(std::string_view text);
  void set_aside(std::string_view line, CountedSentences& sentences, std::string sentence);
  bool finish_from_report(const std::string& line, const std::string& job);
  void take_events();
  void finish(const RunResult& report);
  void finish_with(Ending ending, std::string_view line, const std::string& log, const std::string& reason);
  void list_finished();
  std::vector<protocol::ScheduledJob> jobs_of(std::string_view text, const WaitingLine& line) const;
  void answer();
  void note(const std::string& sentence) { log_.write(RunLog::kProgram, sentence); }

  EngineParts parts_;
  ResultLists lists_;
  RunLog log_;
  Running running_;
  std::unique_ptr<RunThread> session_;

  // A look through the index: it goes on from tick to tick, and behind the end of each session.
  IndexLines index_;
  bool looking_back_ = false;  // for jobs that an earlier run was cut off in
  std::size_t next_back_ = 0;  // number of the line whose job is looked back at next
  std::size_t next_ = 0;       // number of the line that is looked at next
  bool work_wanted_ = false;   // the look is not at its end
  bool looking_ = false;       // lines have been looked at since the index was read
  bool found_finished_ = false;
  std::string obstacle_;  // why no job is started, "" when there is no reason
  CountedSentences left_alone_{"more jobs are left alone."};
  CountedSentences without_folder_{"more jobs have no folder and are listed as errors."};
  CountedSentences damaged_{"more lines of the job index are damaged and listed as errors."};
  std::unordered_set<std::size_t> noted_;  // hashes of lines whose being left alone is in the log

  bool answering_ = false;
  bool stopped_ = false;
};

}  // namespace qvrcom::scheduler
