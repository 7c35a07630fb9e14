#include "requests/job_upkeep.h"

#include <algorithm>
#include <charconv>

#include "base/date_serial.h"
#include "environment/names.h"
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

bool contains(const std::vector<std::string>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

JobUpkeep::Removal JobUpkeep::remove(const std::string& job) {
  return trap_("JobUpkeep", [&] {
    const auto hold = parts_.gate.enter();
    if (!hold) return Removal::kNotDone;
    const jobs::Board board = board_.read_all();
    const auto found = std::find_if(board.jobs.begin(), board.jobs.end(),
                                    [&](const jobs::BoardJob& each) { return each.job == job; });
    const bool is_listed = found != board.jobs.end();
    if (is_listed && !found->doubt.empty()) return Removal::kDoubtful;
    if (!is_listed && !contains(board.abandoned, job)) return Removal::kUnknown;
    if (is_listed ? waits(*found) : !contains(abandoned(board), job)) return Removal::kInUse;
    if (!is_listed || found->has_folder) discard(job);
    if (is_listed) take_off_lists(found->line);
    return Removal::kRemoved;
  });
}

JobUpkeep::Cleaning JobUpkeep::clean() {
  return trap_("JobUpkeep", [&] {
    Cleaning cleaning;
    const auto hold = parts_.gate.enter();
    if (!hold) return cleaning;
    cleaning.jobs = abandoned(board_.read_all(jobs::JobBoard::Extent::kFolders));
    for (const std::string& job : cleaning.jobs)
      discard(job);
    cleaning.logs = remove_old_logs();
    cleaning.done = true;
    return cleaning;
  });
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

void JobUpkeep::take_off_lists(const std::string& line) {
  session::BusinessRules rules(parts_.rules);
  rules.Copy_Items_From_Scheduler_to_BeProcessed();
  for (const protocol::ResultList& list : protocol::kResultLists) {
    std::string rest;
    rules.RemoveJobFromList(list.pending_file, line, rest);
    rules.ReWrite_File(list.pending_file, rest);
  }
  if (parts_.link.scheduler_window_stands())
    parts_.link.NotifyScheduler(protocol::SchedulerRequest::kResultsTaken);
}

void JobUpkeep::discard(const std::string& job) {
  platform::Files& files = parts_.rules.files;
  const std::string folder = board_.scheduler().path(job);
  jobs::refuse_link(files, folder);
  // What can be decoded is decoded for the job's own site.
  const std::string site = jobs::job_from_script(board_.scheduler(), job).device_id;
  if (!site.empty()) parts_.database.run("Update_SessionQVR", {site});
  session::bring_to_safety(parts_.rules, job, session::RescueWhat::kDeleted);
  if (files.folder_exists(folder)) jobs::delete_job_folder(files, folder);
}

// A log's age is that of its job, which its name tells.
std::size_t JobUpkeep::remove_old_logs() {
  platform::Files& files = parts_.rules.files;
  const std::string folder = parts_.rules.folders.GetLogsFolder();
  if (!files.folder_exists(folder)) return 0;
  const base::LocalTime oldest = parts_.rules.clock.now() - std::chrono::days(log_days());
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
    if (folders_of_ended_jobs(seen).empty()) return;
    const auto hold = parts_.gate.try_enter();
    if (!hold) return;
    session::BusinessRules rules(parts_.rules);
    for (const std::string& folder : folders_of_ended_jobs(board_.read_all(jobs::JobBoard::Extent::kFolders)))
      rules.clear_password(folder);
  });
}

std::vector<std::string> JobUpkeep::folders_of_ended_jobs(const jobs::Board& board) const {
  std::vector<std::string> folders;
  for (const std::string& job : board.abandoned)
    folders.push_back(board_.scheduler().path(job));
  for (const jobs::BoardJob& job : board.jobs) {
    const bool is_over = job.doubt.empty() ? !waits(job) : !has_foreign_scheduler();
    if (is_over && job.has_folder) folders.push_back(board_.scheduler().path(job.job));
  }
  return folders;
}

int JobUpkeep::log_days() const {
  const std::string text =
      machine_.setting(environment::kSettingsApplication, "Jobs", "LogDays").value_or("");
  int days = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), days);
  const bool is_good =
      error == std::errc{} && end == text.data() + text.size() && days >= 1 && days <= kMostLogDays;
  return is_good ? days : kLogDays;
}

}  // namespace qvrcom::requests
