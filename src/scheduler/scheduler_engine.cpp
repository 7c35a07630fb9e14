#include "scheduler/scheduler_engine.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/text.h"
#include "environment/names.h"
#include "scheduler/due_lines.h"
#include "scheduler/fault_of.h"

namespace qvrcom::scheduler {

using platform::JobState;
using platform::StopOutcome;

namespace {

constexpr const char* kDialogTitle = "RESPONSE DIALOG";
constexpr std::size_t kMostTold = 20;  // lines left alone, at one look at the index
constexpr const char* kStoppedReason = "The job was stopped in the scheduler before its turn came.";

std::string sentence_of(const base::Fault& fault) {
  std::string text =
      fault.detail().empty() ? fault.description() : fault.description() + ". " + fault.detail();
  return text.ends_with('.') ? text : text + '.';
}

constexpr std::array<const char*, 3> kEndings{"The session is completed.", "The session ended with an error.",
                                              "The session is cancelled."};

}  // namespace

SchedulerEngine::SchedulerEngine(EngineParts parts)
    : parts_(std::move(parts)),
      lists_(parts_.files, parts_.scheduler_folder),
      log_(parts_.files, parts_.clock, parts_.logs_folder) {}

void SchedulerEngine::request(std::int64_t code) {
  switch (code) {
    case 1:
      return jobs_submitted();
    case 2:
      return results_taken();
    case 5:
    case 9:
      return show_session();
    case 6:
      return session_over();
    default:
      note("A request with the unknown code " + std::to_string(code) + " has no effect.");
  }
}

void SchedulerEngine::jobs_submitted() {
  if (stopped_)
    return note("Jobs were submitted while the scheduler was being stopped; they are not started.");
  work_wanted_ = true;
  if (const auto fault = fault_of([this] { lists_.load(); })) {
    // Without them a finished job could not be told from a new one.
    work_wanted_ = false;
    return note("No job is started, for a result list cannot be read: " + sentence_of(*fault));
  }
  look_for_work();
}

void SchedulerEngine::results_taken() {
  answering_ = false;
  const auto fault = fault_of([this] {
    const std::string index = parts_.scheduler_folder + environment::kIndexFile;
    if (parts_.files.file_exists(index)) lists_.drop_taken(parts_.files.read(index));
  });
  if (fault) note("The result lists keep the lines that were taken: " + sentence_of(*fault));
}

void SchedulerEngine::show_session() {
  if (session_) take_events();
  if (!session_) return note("The session was asked for, and none is running.");
  std::string state = "The session was asked for. It is here: " + running_.step;
  if (const std::uint64_t bytes = session_->bytes_done()) state += ", " + std::to_string(bytes) + " bytes";
  log_.write(running_.job, state + ".");
}

void SchedulerEngine::session_over() {
  answering_ = false;
}

std::string SchedulerEngine::read_index() const {
  const std::string path = parts_.scheduler_folder + environment::kIndexFile;
  return parts_.files.file_exists(path) ? parts_.files.read(path) : std::string{};
}

void SchedulerEngine::look_for_work() {
  if (!work_wanted_ || session_ || stopped_) return;
  work_wanted_ = false;
  std::string index;
  if (const auto fault = fault_of([&] { index = read_index(); }))
    return note("The job index cannot be read: " + sentence_of(*fault));
  const bool was_answering = std::exchange(answering_, false);
  for (const std::string_view line : base::lines_of(index)) {
    if (line.empty()) continue;
    consider(std::string(line));
    if (!session_) continue;
    work_wanted_ = true;  // the lines behind it, when it has ended
    break;
  }
  note_left_alone();
  if (answering_) answer();
  answering_ |= was_answering;
}

// An index may hold a hundred thousand of them.
void SchedulerEngine::note_left_alone() {
  const std::vector<std::string> sentences = std::exchange(left_alone_, {});
  const std::size_t told = std::min(sentences.size(), kMostTold);
  for (std::size_t i = 0; i < told; ++i)
    note(sentences[i]);
  if (sentences.size() > told) note(std::to_string(sentences.size() - told) + " more jobs are left alone.");
}

void SchedulerEngine::consider(const std::string& line) {
  if (lists_.finished(line)) {
    answering_ = true;  // somebody still waits for it: it stands in the index
    return;
  }
  const jobs::IndexLineReading reading = jobs::read_index_line(line);
  if (!reading.line) {
    return finish_with(Outcome::kError, line, SessionLog::kProgram,
                       "A line of the job index is damaged: " + reading.reason);
  }
  const Due when = due(*reading.line, parts_.clock.now());
  if (when == Due::kNow) return start(*reading.line, line);
  if (noted_.insert(line).second) left_alone_.push_back(left_alone_sentence(*reading.line, when));
}

void SchedulerEngine::start(const jobs::IndexLine& line, const std::string& text) {
  const auto fault = fault_of([&] {
    SessionPlan plan = make_plan(parts_.files, parts_.scheduler_folder, line.job, line.script_path);
    log_.write(line.job, "The session begins: " + line.description + ", " + line.site_name + ".");
    running_ = {text, line.job, "Starting", 0};
    session_ = std::make_unique<SessionThread>(std::move(plan), parts_.settings, parts_.ways, parts_.wake);
  });
  if (fault) finish_with(Outcome::kError, text, line.job, sentence_of(*fault));
}

void SchedulerEngine::tick() {
  if (session_) take_events();
  look_for_work();
}

void SchedulerEngine::take_events() {
  SessionThread::News news = session_->take_news();
  for (SessionEvent& event : news.events) {
    if (!event.text.empty()) log_.write(running_.job, event.text);
    if (event.step.empty()) continue;
    running_.step = std::move(event.step);
    running_.hint = event.hint;
  }
  if (news.report) finish(*news.report);
}

void SchedulerEngine::finish(const SessionReport& report) {
  session_.reset();
  const Running ended = std::exchange(running_, {});
  finish_with(report.outcome, ended.line, ended.job, report.reason);
  answer();
}

void SchedulerEngine::finish_with(Outcome outcome, const std::string& line, const std::string& log,
                                  const std::string& reason) {
  if (!reason.empty()) log_.write_reason(log, reason);
  log_.write(log, kEndings[static_cast<std::size_t>(outcome)]);
  lists_.add(outcome, line);
  const std::string trouble = lists_.write_kept();
  if (!trouble.empty()) note("A finished job cannot be listed yet: " + trouble);
  answering_ = true;
}

void SchedulerEngine::repeat_answer() {
  lists_.write_kept();
  if (answering_) answer();
}

void SchedulerEngine::answer() {
  const auto dialog = parts_.channel.find_window(kDialogTitle);
  if (dialog == 0) return;
  parts_.channel.post(dialog, parts_.channel.register_message(environment::kSchedulerAnswer), 0, 0);
}

void SchedulerEngine::end_running_session() {
  session_->cancel();
  session_->wait();
  take_events();
}

void SchedulerEngine::stop() {
  stopped_ = true;
  if (session_) end_running_session();
}

StopOutcome SchedulerEngine::stop_job(const std::string& job_name) {
  if (session_ && running_.job == job_name) {
    end_running_session();
    look_for_work();
    return StopOutcome::kStopped;
  }
  std::string index;
  if (fault_of([&] {
        lists_.load();
        index = read_index();
      }))
    return StopOutcome::kUnknownJob;
  for (const std::string_view line : base::lines_of(index)) {
    const auto reading = jobs::read_index_line(line);
    if (!reading.line || reading.line->job != job_name || lists_.finished(line)) continue;
    finish_with(Outcome::kCancelled, std::string(line), job_name, kStoppedReason);
    answer();
    return StopOutcome::kTakenOut;
  }
  return StopOutcome::kUnknownJob;
}

platform::SchedulerStatus SchedulerEngine::status() const {
  platform::SchedulerStatus status;
  if (session_) {
    status.running_job = running_.job;
    status.step = running_.step;
    status.bytes_done = session_->bytes_done();
    status.bytes_hinted = running_.hint;
  }
  std::string index;
  // An index that cannot be read has no jobs to tell of; the reason is logged when work is looked for.
  fault_of([&] { index = read_index(); });
  for (const std::string_view line : base::lines_of(index)) {
    if (!line.empty()) status.jobs.push_back(job_of(std::string(line)));
  }
  return status;
}

platform::ScheduledJob SchedulerEngine::job_of(const std::string& line) const {
  const auto reading = jobs::read_index_line(line);
  platform::ScheduledJob job;
  if (reading.line) {
    job.name = reading.line->job;
    job.description = reading.line->description;
    job.state =
        due(*reading.line, parts_.clock.now()) == Due::kNow ? JobState::kWaiting : JobState::kLeftAlone;
  } else {
    job.state = JobState::kDamaged;
  }
  if (lists_.finished(line)) job.state = JobState::kFinished;
  if (session_ && line == running_.line) job.state = JobState::kRunning;
  return job;
}

}  // namespace qvrcom::scheduler
