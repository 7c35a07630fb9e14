#include "scheduler/scheduler_engine.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "base/fault.h"
#include "jobs/job_log.h"
#include "protocol/index_line.h"
#include "protocol/job_lists.h"
#include "protocol/job_name.h"
#include "protocol/messages.h"
#include "scheduler/job_reports.h"

namespace qvrcom::scheduler {

using platform::StopOutcome;
using protocol::JobState;

namespace {

constexpr std::size_t kLinesPerTick = 500;
constexpr std::size_t kMostJobs = 2000;                  // of the index, in a status
constexpr std::chrono::milliseconds kStopPatience{300};  // for a session that is told to end

constexpr const char* kTakenOutReason = "The job was stopped in the scheduler before its turn came.";
constexpr const char* kLeftBehindReason = "The session was stopped in the scheduler and did not end in time.";
constexpr const char* kEndedBeforeReason =
    "The session had ended before the scheduler was started again, and its log does not say why it failed.";

std::string sentence_of(const base::Fault& fault) {
  std::string text =
      fault.detail().empty() ? fault.description() : fault.description() + ". " + fault.detail();
  return text.ends_with('.') ? text : text + '.';
}

// By Ending.
constexpr std::array<const char*, 3> kSentences{
    "The session is completed.", "The session ended with an error.", "The session is cancelled."};

const char* ending_sentence(Ending ending) {
  return kSentences[static_cast<std::size_t>(ending)];
}

}  // namespace

SchedulerEngine::SchedulerEngine(EngineParts parts)
    : parts_(std::move(parts)),
      lists_(parts_.files, parts_.scheduler_folder),
      log_(parts_.files, parts_.clock, parts_.logs_folder) {}

void SchedulerEngine::request(std::int64_t code) {
  using protocol::SchedulerRequest;
  if (code < 0 || code > std::numeric_limits<std::int16_t>::max()) return unknown_request(code);
  switch (static_cast<SchedulerRequest>(code)) {
    case SchedulerRequest::kJobsSubmitted:
      return jobs_submitted();
    case SchedulerRequest::kResultsTaken:
      return results_taken();
    case SchedulerRequest::kShowSession:
    case SchedulerRequest::kShowTelnetSession:
      return show_session();
    case SchedulerRequest::kSessionOver:
      return session_over();
  }
  unknown_request(code);
}

void SchedulerEngine::unknown_request(std::int64_t code) {
  note("A request with the unknown code " + std::to_string(code) + " has no effect.");
}

void SchedulerEngine::jobs_submitted() {
  if (stopped_)
    return note("Jobs were submitted while the scheduler was being stopped; they are not started.");
  work_wanted_ = true;
  looking_ = false;
  next_ = 0;
  obstacle_.clear();
  if (const auto fault = base::fault_of([this] { lists_.load(); })) {
    // Without them a finished job could not be told from a new one.
    work_wanted_ = false;
    obstacle_ = "No job is started, for a result list cannot be read: " + sentence_of(*fault);
    return note(obstacle_);
  }
  look_for_work();
}

void SchedulerEngine::results_taken() {
  answering_ = false;
  const auto fault = base::fault_of([this] {
    const std::string index = parts_.scheduler_folder + protocol::kIndexFile;
    if (parts_.files.is_taken(index)) lists_.drop_taken(parts_.files.read(index));
  });
  if (fault) note("The result lists keep the lines that were taken: " + sentence_of(*fault));
}

// An earlier run was ended before it was told that the results were taken.
void SchedulerEngine::drop_gone() {
  const auto fault = base::fault_of([this] { lists_.drop_gone(read_index()); });
  if (fault) note("The result lists keep the lines of jobs that have gone: " + sentence_of(*fault));
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
  return parts_.files.read_or_empty(parts_.scheduler_folder + protocol::kIndexFile);
}

void SchedulerEngine::take_index() {
  if (index_.take(read_index())) next_ = next_back_ = 0;
}

// Whether the index is the one whose lines are being looked at, as far as its length tells.
bool SchedulerEngine::index_is_known() const {
  const std::string path = parts_.scheduler_folder + protocol::kIndexFile;
  return looking_ && parts_.files.file_exists(path) && parts_.files.length(path) == index_.bytes();
}

void SchedulerEngine::look_for_work() {
  if (!work_wanted_ || session_ || stopped_ || looking_back_) return;
  const auto fault = base::fault_of([this] {
    if (!index_is_known()) take_index();
  });
  if (fault) {
    work_wanted_ = false;
    obstacle_ = "No job is started, for the job index cannot be read: " + sentence_of(*fault);
    return note(obstacle_);
  }
  looking_ = true;
  const std::size_t end = std::min(index_.size(), next_ + kLinesPerTick);
  while (next_ < end && !session_)
    consider(next_++);
  if (lists_.trouble().empty()) list_finished();
  if (!session_ && next_ < index_.size()) return parts_.wake();
  end_look();
}

void SchedulerEngine::end_look() {
  work_wanted_ = session_ != nullptr;  // the lines behind it, when it has ended
  looking_ = false;
  if (!session_) next_ = 0;
  for (CountedSentences* sentences : {&left_alone_, &without_folder_, &damaged_})
    sentences->write_to(log_);
  if (!std::exchange(found_finished_, false)) return;
  answering_ = true;  // somebody still waits for it: it stands in the index
  answer();
}

void SchedulerEngine::consider(std::size_t number) {
  const std::string_view text = index_.text(number);
  if (lists_.find(text) != nullptr) {
    lists_.add_again(text);
    found_finished_ = true;
    return;
  }
  const WaitingLine& line = index_.line(number);
  if (!line.problem.empty())
    return set_aside(text, damaged_,
                     line.problem + " It begins with: " + readable(std::string(text.substr(0, 80))));
  const Due when = due(line, parts_.clock.now());
  if (when == Due::kNow) return start(text);
  if (noted_.insert(LineHash{}(text)).second) left_alone_.add(left_alone_sentence(line, when));
}

// The line is listed as an error, and has no log of its own.
void SchedulerEngine::set_aside(std::string_view line, CountedSentences& sentences, std::string sentence) {
  sentences.add(std::move(sentence));
  lists_.add(Ending::kError, line);
  found_finished_ = true;
}

void SchedulerEngine::start(std::string_view text) {
  const protocol::IndexLine line = *protocol::read_index_line(text).line;
  if (!parts_.files.folder_exists(parts_.scheduler_folder + line.job))
    return set_aside(text, without_folder_,
                     "The job " + line.job + " has no folder and is listed as an error.");
  const auto fault = base::fault_of([&] {
    if (finish_from_report(std::string(text), line.job)) return;
    RunPlan plan = make_plan(parts_.files, parts_.scheduler_folder, line.job, line.script_path);
    log_.write(line.job, "The session begins: " + line.description + ", " + line.site_name + ".");
    running_ = {std::string(text), line.job, "Starting", 0};
    session_ = std::make_unique<RunThread>(std::move(plan), parts_.settings, parts_.ways, parts_.wake);
  });
  if (fault) finish_with(Ending::kError, text, line.job, sentence_of(*fault));
  if (!session_) found_finished_ = true;
}

// Whether the job has run before in a way that it must not run again.
bool SchedulerEngine::finish_from_report(const std::string& line, const std::string& job) {
  auto earlier = earlier_session(parts_.files, parts_.scheduler_folder + job);
  if (!earlier) return false;
  const bool failed = earlier->ending != Ending::kCompleted;
  if (earlier->ended) log_.write(job, "The session had ended before the scheduler was started again.");
  if (earlier->ended && failed && jobs::reason_of(parts_.files, parts_.logs_folder, job).empty())
    earlier->reason = kEndedBeforeReason;
  finish_with(earlier->ending, line, job, earlier->reason);
  return true;
}

// What cannot be read is told when jobs are submitted.
void SchedulerEngine::list_interrupted() {
  looking_back_ = !base::fault_of([this] {
    lists_.load();
    take_index();
  });
  if (looking_back_) drop_gone();
  if (looking_back_) return look_back();
  base::fault_of([this] { end_cut_reports(parts_.files, parts_.scheduler_folder); });
}

void SchedulerEngine::look_back() {
  const std::size_t end = std::min(index_.size(), next_back_ + kLinesPerTick);
  for (; next_back_ < end; ++next_back_) {
    const std::string_view text = index_.text(next_back_);
    const WaitingLine& line = index_.line(next_back_);
    if (!line.problem.empty() || due(line, parts_.clock.now()) != Due::kNow || lists_.find(text) != nullptr)
      continue;
    base::fault_of([&] { finish_from_report(std::string(text), line.job); });
  }
  list_finished();
  if (next_back_ < index_.size()) return parts_.wake();
  looking_back_ = false;
  base::fault_of([this] { end_cut_reports(parts_.files, parts_.scheduler_folder); });
  look_for_work();
}

void SchedulerEngine::tick() {
  if (session_) take_events();
  looking_back_ ? look_back() : look_for_work();
}

void SchedulerEngine::take_events() {
  RunThread::News news = session_->take_news();
  for (RunEvent& event : news.events) {
    if (!event.text.empty()) log_.write(running_.job, event.text);
    if (event.step.empty()) continue;
    running_.step = std::move(event.step);
    running_.hint = event.hint;
  }
  if (news.report) finish(*news.report);
}

void SchedulerEngine::finish(const RunResult& report) {
  session_.reset();
  const Running ended = std::exchange(running_, {});
  finish_with(report.ending, ended.line, ended.job, report.reason);
  list_finished();
  answer();
}

void SchedulerEngine::finish_with(Ending ending, std::string_view line, const std::string& log,
                                  const std::string& reason) {
  if (!reason.empty()) log_.write_reason(log, reason);
  log_.write(log, ending_sentence(ending));
  lists_.add(ending, line);
  answering_ = true;
}

void SchedulerEngine::list_finished() {
  if (!lists_.has_kept()) return;
  const bool told = !lists_.trouble().empty();
  lists_.write_kept();
  if (!told && !lists_.trouble().empty()) note("A finished job cannot be listed yet: " + lists_.trouble());
}

void SchedulerEngine::repeat() {
  list_finished();
  if (answering_) answer();
}

void SchedulerEngine::answer() {
  const auto dialog = parts_.channel.find_window(protocol::kDialogTitle);
  if (dialog == 0) return;
  parts_.channel.post(dialog, parts_.channel.register_message(protocol::kSchedulerAnswer), 0, 0);
}

void SchedulerEngine::stop() {
  stopped_ = true;
  if (session_) session_->cancel();
}

bool SchedulerEngine::leave_session_behind() {
  if (!session_) return false;
  static_cast<void>(session_.release());
  finish({Ending::kCancelled, kLeftBehindReason});
  return true;
}

StopOutcome SchedulerEngine::stop_job(const std::string& job_name) {
  if (!protocol::is_job_name(job_name)) return StopOutcome::kUnknownJob;
  if (session_ && running_.job == job_name) {
    if (std::exchange(running_.told_to_end, true)) return StopOutcome::kStopped;
    session_->cancel();
    if (session_->wait_for(kStopPatience)) tick();
    return StopOutcome::kStopped;
  }
  if (base::fault_of([&] {
        lists_.load();
        take_index();
      }))
    return StopOutcome::kUnknownJob;
  for (std::size_t i = 0; i < index_.size(); ++i) {
    const std::string_view text = index_.text(i);
    if (text.find(job_name) == std::string_view::npos || lists_.find(text) != nullptr) continue;
    if (index_.line(i).job != job_name) continue;
    finish_with(Ending::kCancelled, text, job_name, kTakenOutReason);
    list_finished();
    answer();
    return StopOutcome::kTakenOut;
  }
  return StopOutcome::kUnknownJob;
}

protocol::SchedulerStatus SchedulerEngine::status() {
  protocol::SchedulerStatus status;
  if (session_) {
    status.running_job = running_.job;
    status.step = running_.step;
    status.bytes_done = session_->bytes_done();
    status.bytes_hinted = running_.hint;
  }
  // Of an index that cannot be read the lines that were read last are told.
  base::fault_of([this] { take_index(); });
  std::unordered_set<std::string_view, LineHash, LineEqual> told;
  const auto tell = [&](std::string_view text, const WaitingLine& line) {
    told.insert(text);
    for (protocol::ScheduledJob& job : jobs_of(text, line))
      status.jobs.push_back(std::move(job));
  };
  const std::size_t shown = std::min(index_.size(), kMostJobs);
  for (std::size_t i = 0; i < shown; ++i)
    tell(index_.text(i), index_.line(i));
  status.jobs_left_out = index_.size() - shown;
  std::vector<std::string_view> wherever = lists_.kept();
  wherever.resize(std::min(wherever.size(), kMostJobs));
  if (session_) wherever.push_back(running_.line);
  for (const std::string_view text : wherever) {
    if (!told.contains(text)) tell(text, waiting_line(text));
  }
  return status;
}

std::vector<protocol::ScheduledJob> SchedulerEngine::jobs_of(std::string_view text,
                                                             const WaitingLine& line) const {
  if (!line.problem.empty()) {
    std::vector<protocol::ScheduledJob> jobs;
    for (const std::string& name : jobs_named_in(text))
      jobs.push_back({name, {}, JobState::kDamaged, line.problem});
    if (jobs.empty()) jobs.push_back({{}, {}, JobState::kDamaged, line.problem});
    return jobs;
  }
  protocol::ScheduledJob job{line.job, line.description, JobState::kWaiting, obstacle_};
  const ResultLists::Finished* finished = lists_.find(text);
  if (session_ && LineEqual{}(text, running_.line)) {
    job.state = JobState::kRunning;
  } else if (finished != nullptr) {
    job.state = JobState::kFinished;
  } else if (due(line, parts_.clock.now()) != Due::kNow) {
    job.state = JobState::kLeftAlone;
  }
  if (job.state != JobState::kWaiting) job.reason.clear();
  if (finished != nullptr && finished->standing == ResultLists::Standing::kKept) {
    job.state = JobState::kUnlisted;
    job.reason = std::string(ending_sentence(finished->ending)) + " It is not listed: " + lists_.trouble();
  }
  return {job};
}

}  // namespace qvrcom::scheduler
