#include "jobs/job_board.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "base/number.h"
#include "base/text.h"
#include "jobs/line_key.h"
#include "protocol/index_line.h"
#include "protocol/job_lists.h"
#include "protocol/job_name.h"
#include "protocol/script_grammar.h"

namespace qvrcom::jobs {
namespace {

// The job of a line that is an index line; of others something else or nothing.
std::string_view job_named_by(std::string_view line) {
  if (!line.ends_with(';')) return {};
  line.remove_suffix(1);
  return protocol::job_of_script(line.substr(line.rfind(';') + 1));  // npos + 1 is 0
}

class BoardMaker {
 public:
  BoardMaker(const std::vector<std::string>& folders, bool folders_only)
      : folders_(folders.begin(), folders.end()),
        left_(folders_),
        wanted_(folders.begin(), folders.end()),
        folders_only_(folders_only) {}

  void add_list(const std::string& file, std::string text) {
    const auto lines = base::lines_of(texts_.emplace_back(file, std::move(text)).second);
    if (!folders_only_) board_.jobs.reserve(board_.jobs.size() + lines.size());
    std::size_t number = 0;
    for (const std::string_view line : lines) {
      ++number;
      if (!line.empty() && (!folders_only_ || wanted_.contains(job_named_by(line))))
        add_line(file, number, line);
    }
  }

  void miss_list(const std::string& file, const base::Fault& fault) {
    board_.unread.push_back({file, fault});
  }

  // Why a torn line, or two that have run into one, may be about the job; "" when none is.
  std::string doubt_about(const std::string& job) {
    if (!damaged_) damaged_ = damaged_lines();
    const auto found = std::find_if(damaged_->begin(), damaged_->end(), [&](const BoardProblem& problem) {
      return problem.text.find(job) != std::string::npos;
    });
    if (found == damaged_->end()) return {};
    return "Line " + std::to_string(found->line) + " of " + found->file +
           " names it and is damaged: " + found->reason;
  }

  Board take() {
    if (board_.unread.empty()) board_.abandoned.assign(left_.begin(), left_.end());
    return std::move(board_);
  }

 private:
  std::vector<BoardProblem> damaged_lines() const {
    std::vector<BoardProblem> damaged;
    for (const auto& [file, text] : texts_) {
      std::size_t number = 0;
      for (const std::string_view line : base::lines_of(text)) {
        ++number;
        if (line.empty() || places_.contains(line)) continue;
        const auto reading = protocol::read_index_line(line);
        if (!reading.line) damaged.push_back({file, number, std::string(line), reading.reason});
      }
    }
    return damaged;
  }

  void add_line(const std::string& file, std::size_t number, std::string_view line) {
    const auto [place, is_new] = places_.try_emplace(line, board_.jobs.size());
    if (is_new) {
      protocol::IndexLineReading reading = protocol::read_index_line(line);
      if (!reading.line) {
        places_.erase(place);
        board_.problems.push_back({file, number, std::string(line), reading.reason});
        return;
      }
      add_job(std::move(*reading.line), line);
    }
    auto& lists = board_.jobs[place->second].lists;
    if (lists.empty() || lists.back() != file) lists.push_back(file);
  }

  void add_job(protocol::IndexLine values, std::string_view line) {
    left_.erase(values.job);
    const bool has_folder = folders_.contains(values.job);
    board_.jobs.push_back({std::move(values.job),
                           std::move(values.description),
                           std::move(values.site_name),
                           std::move(values.site_id),
                           std::move(values.device_id),
                           base::from_date_serial(values.start),
                           base::from_date_serial(values.creation),
                           {},
                           std::string(line),
                           has_folder,
                           {},
                           {}});
  }

  Board board_;
  std::set<std::string> folders_;
  std::set<std::string> left_;  // those that no line has named yet
  // Two lists may write a job's name differently.
  std::unordered_set<std::string, LineHash, LineEqual> wanted_;
  bool folders_only_;
  std::deque<std::pair<std::string, std::string>> texts_;  // of the lists by file, for the views into them
  std::optional<std::vector<BoardProblem>> damaged_;       // looked for when a folder makes it matter
  std::unordered_map<std::string_view, std::size_t, LineHash, LineEqual> places_;  // into the jobs
};

}  // namespace

std::optional<protocol::Ending> BoardJob::ending() const {
  for (const protocol::ResultList& each : protocol::kResultLists) {
    if (stands_in(each.file) || stands_in(each.pending_file)) return each.ending;
  }
  return reported;
}

bool BoardJob::stands_in(const char* list) const {
  return std::find(lists.begin(), lists.end(), list) != lists.end();
}

bool BoardJob::has_gone() const {
  return !has_folder && ending() && !stands_in(protocol::kIndexFile) && !stands_in(protocol::kRescheduleFile);
}

std::vector<BoardJob> unprocessed_jobs(const Board& board) {
  std::vector<BoardJob> found;
  std::copy_if(board.jobs.begin(), board.jobs.end(), std::back_inserter(found),
               [](const BoardJob& job) { return job.has_folder && job.ending(); });
  return found;
}

Board JobBoard::read(Extent extent) const {
  BoardMaker maker(scheduler_.job_folders(), extent == Extent::kFolders);
  for (const char* file : protocol::kJobLists) {
    std::string text;
    const auto fault = base::fault_of([&] { text = scheduler_.read_or_empty(file); });
    fault ? maker.miss_list(file, *fault) : maker.add_list(file, std::move(text));
  }
  Board board = maker.take();
  std::erase_if(board.abandoned, [&](const std::string& name) {
    const auto ending = scheduler_.reported_ending(name);
    std::string doubt = ending ? std::string() : maker.doubt_about(name);
    if (!ending && doubt.empty()) return false;
    board.jobs.push_back(job_from_script(scheduler_, name));
    board.jobs.back().has_folder = true;
    board.jobs.back().reported = ending;
    board.jobs.back().doubt = std::move(doubt);
    return true;
  });
  return board;
}

Board JobBoard::read_all(Extent extent) const {
  Board board = read(extent);
  if (!board.unread.empty()) throw board.unread.front().fault;
  return board;
}

BoardJob job_from_script(const SchedulerFiles& scheduler, const std::string& job_name) {
  BoardJob job;
  job.job = job_name;
  if (!protocol::is_job_name(job_name)) return job;
  std::string text;
  base::fault_of([&] { text = scheduler.read_or_empty(protocol::script_path(job_name)); });
  const auto script = protocol::read_script(text).script;
  if (!script) return job;
  job.description = script->header.description;
  job.site_name = script->header.site_name;
  job.site_id = script->header.site_id;
  job.device_id = script->header.qvr_id;
  if (const auto start = base::parse_number(script->header.start_date))
    job.start = base::from_date_serial(*start);
  return job;
}

}  // namespace qvrcom::jobs
