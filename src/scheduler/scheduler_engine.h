#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "jobs/index_line.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/message_channel.h"
#include "platform/scheduler_control.h"
#include "scheduler/result_lists.h"
#include "scheduler/scheduler_settings.h"
#include "scheduler/session_log.h"
#include "scheduler/session_thread.h"

namespace qvrcom::scheduler {

// What the engine works with.
struct EngineParts {
  platform::Files& files;
  platform::Clock& clock;
  platform::MessageChannel& channel;
  SessionWays ways;
  std::string scheduler_folder;  // suite path, ends in a backslash
  std::string logs_folder;       // likewise
  SchedulerSettings settings;
  // Called on the session's thread when `tick` has something to do; it only wakes the program.
  std::function<void()> wake;
};

// JobPilot without its process: told of jobs, it runs the due lines of "index.sch" one session at a time,
// lists each in one of its result files and answers. All members belong to one thread; a session runs on
// another.
class SchedulerEngine {
 public:
  explicit SchedulerEngine(EngineParts parts);

  // A request code of the message channel: 1 jobs submitted, 2 results taken, 5 and 9 show the session,
  // 6 session over. Any other is logged and has no effect.
  void request(std::int64_t code);

  // Takes what the session's thread reported, lists a finished job and starts the next one.
  void tick();

  // An answer is repeated to the dialog, every 250 ms, from a job's end until a request 2 or 6.
  bool answering() const { return answering_; }
  void repeat_answer();

  bool running() const { return session_ != nullptr; }

  // Ends the running session and lists its job as cancelled; nothing is started any more.
  void stop();
  platform::StopOutcome stop_job(const std::string& job_name);

  // Without version and process, which the program knows.
  platform::SchedulerStatus status() const;

 private:
  struct Running {
    std::string line;
    std::string job;
    std::string step;
    std::uint64_t hint = 0;
  };

  void jobs_submitted();
  void results_taken();
  void show_session();
  void session_over();

  std::string read_index() const;  // "" when it is missing
  void look_for_work();
  void consider(const std::string& line);
  void note_left_alone();
  void start(const jobs::IndexLine& line, const std::string& text);
  void take_events();
  void finish(const SessionReport& report);
  void finish_with(Outcome outcome, const std::string& line, const std::string& log,
                   const std::string& reason);
  void end_running_session();
  platform::ScheduledJob job_of(const std::string& line) const;
  void answer();
  void note(const std::string& sentence) { log_.write(SessionLog::kProgram, sentence); }

  EngineParts parts_;
  ResultLists lists_;
  SessionLog log_;
  Running running_;
  std::unique_ptr<SessionThread> session_;
  std::unordered_set<std::string> noted_;  // lines whose being left alone is in the log
  std::vector<std::string> left_alone_;    // sentences for it
  bool work_wanted_ = false;
  bool answering_ = false;
  bool stopped_ = false;
};

}  // namespace qvrcom::scheduler
