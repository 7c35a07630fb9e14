#include "requests/job_upkeep.h"

#include <algorithm>
#include <charconv>
#include <unordered_set>

#include "base/date_serial.h"
#include "base/fault.h"
#include "base/text.h"
#include "environment/names.h"
#include "jobs/line_key.h"
#include "jobs/report_file.h"
#include "protocol/index_line.h"
#include "protocol/job_lists.h"
#include "protocol/job_log.h"
#include "protocol/messages.h"
#include "session/file_rescue.h"

namespace qvrcom::requests {
namespace {

constexpr int kLogDays = 90;
constexpr int kMostLogDays = 36500;
using protocol::kLogExtension;

bool waits(const jobs::BoardJob& job) {
  return !job.ending();
}

bool is_in_index(const jobs::BoardJob& job) {
  return waits(job) && job.stands_in(protocol::kIndexFile);
}

bool contains(const std::vector<std::string>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

const jobs::BoardJob* job_of(const jobs::Board& board, const std::string& name) {
  const auto found =
      std::find_if(board.jobs.begin(), board.jobs.end(), [&](const auto& each) { return each.job == name; });
  return found == board.jobs.end() ? nullptr : &*found;
}

}  // namespace

JobUpkeep::Removal JobUpkeep::remove(const std::string& job) {
  return trap_("JobUpkeep", [&]() -> Removal {
    const auto hold = parts_.gate.enter();
    if (!hold) return {};
    jobs::Board board = board_.read_all();
    const jobs::BoardJob* found = job_of(board, job);
    if (found != nullptr && found->doubt.empty() && waits(*found)) {
      take_out(job);
      board = board_.read_all();
      found = job_of(board, job);
    }
    if (found == nullptr) return remove_unlisted(board, job);
    if (!found->doubt.empty()) return {Removal::kDoubtful, {}, {}};
    if (waits(*found)) return {Removal::kInUse, {}, {}};
    Removal removal{found->has_folder ? Removal::kRemoved : Removal::kLinesDropped, {}, {}};
    if (found->has_folder) removal.results = discard(job);
    take_off_lists({found->line});
    removal.lists = scheduler_lists(*found);
    return removal;
  });
}

JobUpkeep::Removal JobUpkeep::remove_unlisted(const jobs::Board& board, const std::string& job) {
  if (!contains(board.abandoned, job)) return {Removal::kUnknown, {}, {}};
  if (!contains(abandoned(board), job)) return {Removal::kInUse, {}, {}};
  return {Removal::kRemoved, discard(job), {}};
}

// Whoever owns the job index's turns takes the job out of them. A session that runs is nobody's to end here.
void JobUpkeep::take_out(const std::string& job) {
  const auto status = scheduler_.status().status;
  if (status && status->running_job == job) return;
  const bool is_told = scheduler_.stop_job(job) != platform::StopOutcome::kNotRunning;
  if (is_told || parts_.link.scheduler_window_stands()) return;
  parts_.link.NotifyScheduler(protocol::SchedulerRequest::kSessionOver);  // starts it
  scheduler_.stop_job(job);
}

JobUpkeep::Cleaning JobUpkeep::clean() {
  return trap_("JobUpkeep", [&] {
    Cleaning cleaning;
    cleaning.log_days = log_days();  // a bad one is told before anything has gone
    const auto hold = parts_.gate.enter();
    if (!hold) return cleaning;
    const jobs::Board board = board_.read_all();
    for (const std::string& job : abandoned(board)) {
      const auto fault = base::fault_of([&] { discard(job); });
      if (fault) {
        cleaning.stuck.push_back({job, *fault});
      } else {
        cleaning.jobs.push_back(job);
      }
    }
    cleaning.lines = drop_ended_lines(board);
    for (const jobs::BoardJob& job : jobs::unprocessed_jobs(board))
      cleaning.waiting.push_back(job.job);
    cleaning.logs = remove_old_logs(cleaning.log_days);
    cleaning.done = true;
    return cleaning;
  });
}

std::vector<JobUpkeep::EndedLine> JobUpkeep::drop_ended_lines(const jobs::Board& board) {
  std::vector<EndedLine> ended;
  std::vector<std::string> lines;
  for (const jobs::BoardJob& job : board.jobs) {
    if (!job.has_gone()) continue;
    ended.push_back({job.job, scheduler_lists(job)});
    lines.push_back(job.line);
  }
  if (!lines.empty()) take_off_lists(lines);
  return ended;
}

// A session that was left goes on without its index line. Our scheduler tells which job it runs; another
// maker's may run any of the last day.
std::vector<std::string> JobUpkeep::abandoned(const jobs::Board& board) const {
  const auto status = scheduler_.status().status;
  const bool is_foreign = !status && parts_.link.scheduler_window_stands();
  const base::LocalTime yesterday = parts_.rules.clock.now() - std::chrono::days(1);
  std::vector<std::string> found = board.abandoned;
  std::erase_if(found, [&](const std::string& job) {
    const auto moment = base::from_job_name(job);
    return (status && status->running_job == job) || (is_foreign && (!moment || *moment > yesterday));
  });
  return found;
}

// The result lists that keep the job's line until a scheduler starts: they are the scheduler's alone.
std::vector<std::string> JobUpkeep::scheduler_lists(const jobs::BoardJob& job) const {
  std::vector<std::string> lists;
  if (parts_.link.scheduler_window_stands()) return lists;
  for (const protocol::ResultList& list : protocol::kResultLists)
    if (contains(job.lists, list.file)) lists.push_back(list.file);
  return lists;
}

// The pending lists are this library's, and whoever writes them has the session. Every result line has to be
// in them before the scheduler is told that they were taken.
void JobUpkeep::take_off_lists(const std::vector<std::string>& lines) {
  const jobs::SchedulerFiles& scheduler = board_.scheduler();
  scheduler.need_index();
  session::BusinessRules(parts_.rules).Copy_Items_From_Scheduler_to_BeProcessed();
  const std::unordered_set<std::string_view, jobs::LineHash, jobs::LineEqual> gone(lines.begin(),
                                                                                   lines.end());
  for (const protocol::ResultList& list : protocol::kResultLists) {
    const std::string text = scheduler.read_or_empty(list.pending_file);
    std::vector<std::string> rest;
    for (const std::string_view line : base::lines_of(text))
      if (!line.empty() && !gone.contains(line)) rest.emplace_back(line);
    if (!text.empty()) scheduler.replace(list.pending_file, base::with_line_ends(rest));
  }
  if (parts_.link.scheduler_window_stands())
    parts_.link.NotifyScheduler(protocol::SchedulerRequest::kResultsTaken);
}

// The answer: what had come of it already.
std::vector<std::string> JobUpkeep::discard(const std::string& job) {
  platform::Files& files = parts_.rules.files;
  const std::string folder = board_.scheduler().path(job);
  jobs::refuse_link(files, folder);
  const auto report = jobs::report_of(files, folder);
  // What can be decoded is decoded for the job's own site.
  const std::string site = jobs::job_from_script(board_.scheduler(), job).device_id;
  if (!site.empty()) parts_.database.run("Update_SessionQVR", {site});
  session::bring_to_safety(parts_.rules, job, session::RescueWhat::kDeleted);
  if (files.folder_exists(folder)) jobs::delete_job_folder(files, folder);
  return report ? report->results() : std::vector<std::string>{};
}

// A log's age is that of its job, which its name tells.
std::size_t JobUpkeep::remove_old_logs(int days) {
  platform::Files& files = parts_.rules.files;
  const std::string folder = parts_.rules.folders.GetLogsFolder();
  if (!files.folder_exists(folder)) return 0;
  const base::LocalTime oldest = parts_.rules.clock.now() - std::chrono::days(days);
  std::size_t removed = 0;
  for (const std::string& name : files.list(folder)) {
    if (!name.ends_with(kLogExtension)) continue;
    const auto moment = base::from_job_name(name);
    if (!moment || *moment >= oldest) continue;
    files.remove(folder + name);
    ++removed;
  }
  return removed;
}

// Another maker's scheduler may still make something of a damaged line; ours runs none.
bool JobUpkeep::has_foreign_scheduler() const {
  return parts_.link.scheduler_window_stands() && !scheduler_.status().status;
}

// The lock is taken only where there is something to do: this runs at every start.
void JobUpkeep::forget_access_codes(const jobs::Board& seen) {
  trap_("JobUpkeep", [&] {
    if (folders_of_jobs_over(seen).empty()) return;
    const auto hold = parts_.gate.try_enter();
    if (!hold) return;
    session::BusinessRules rules(parts_.rules);
    for (const std::string& folder : folders_of_jobs_over(board_.read_all(jobs::JobBoard::Extent::kFolders)))
      rules.clear_password(folder);
  });
}

std::vector<std::string> JobUpkeep::folders_of_jobs_over(const jobs::Board& board) const {
  std::vector<std::string> folders;
  for (const std::string& job : board.abandoned)
    folders.push_back(board_.scheduler().path(job));
  const bool has_doubt = std::any_of(board.jobs.begin(), board.jobs.end(),
                                     [](const jobs::BoardJob& job) { return !job.doubt.empty(); });
  const bool may_be_run = has_doubt && has_foreign_scheduler();
  for (const jobs::BoardJob& job : board.jobs) {
    if (!job.has_folder) continue;
    const bool is_over = job.doubt.empty() ? !waits(job) || has_changed_device(job.job) : !may_be_run;
    if (is_over) folders.push_back(board_.scheduler().path(job.job));
  }
  return folders;
}

// Without the job that a scheduler runs, and those that it leaves alone.
std::vector<jobs::BoardJob> JobUpkeep::left_waiting(const jobs::Board& seen) const {
  std::vector<jobs::BoardJob> left;
  if (!std::any_of(seen.jobs.begin(), seen.jobs.end(), is_in_index)) return left;
  const auto hold = parts_.gate.try_enter();
  if (!hold) return left;
  const auto status = scheduler_.status().status;
  for (jobs::BoardJob& job : board_.read_all(jobs::JobBoard::Extent::kFolders).jobs) {
    if (!is_in_index(job) || (status && status->running_job == job.job)) continue;
    if (has_changed_device(job.job)) continue;
    const auto line = protocol::read_index_line(job.line).line;
    const bool is_due = line && protocol::due(*line, parts_.rules.clock.now()) == protocol::Due::kNow;
    if (is_due) left.push_back(std::move(job));
  }
  return left;
}

std::vector<jobs::BoardJob> JobUpkeep::cut_off(const jobs::Board& seen) const {
  std::vector<jobs::BoardJob> found;
  for (const jobs::BoardJob& job : seen.jobs) {
    if (is_in_index(job) && job.has_folder && has_changed_device(job.job)) found.push_back(job);
  }
  for (const std::string& job : seen.abandoned) {
    if (has_changed_device(job)) found.push_back(jobs::job_from_script(board_.scheduler(), job));
  }
  if (found.empty()) return found;
  const auto status = scheduler_.status().status;
  std::erase_if(found, [&](const auto& job) { return status && status->running_job == job.job; });
  return found;
}

bool JobUpkeep::has_changed_device(const std::string& job) const {
  const auto report = jobs::report_of(parts_.rules.files, board_.scheduler().path(job));
  return report && report->has_changed();
}

int JobUpkeep::log_days() const {
  const std::string text =
      machine_.setting(environment::kSettingsApplication, "Jobs", "LogDays").value_or("");
  if (text.empty()) return kLogDays;
  int days = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), days);
  const bool is_good =
      error == std::errc{} && end == text.data() + text.size() && days >= 1 && days <= kMostLogDays;
  if (is_good) return days;
  throw base::Fault("Invalid setting",
                    "The setting LogDays of section Jobs is \"" + text + "\", not a whole number from 1 to " +
                        std::to_string(kMostLogDays) + ". Nothing is cleaned; correct it.");
}

}  // namespace qvrcom::requests
