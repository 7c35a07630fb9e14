#include "results/job_board.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <unordered_map>

#include "base/text.h"
#include "environment/names.h"
#include "jobs/index_line.h"
#include "jobs/job_name.h"
#include "jobs/script_grammar.h"

namespace qvrcom::results {
namespace {

constexpr const char* kBoardFiles[] = {
    environment::kIndexFile,        environment::kRescheduleFile,       environment::kCompletedFile,
    environment::kErrorFile,        environment::kCancelledFile,        environment::kCompletedPendingFile,
    environment::kErrorPendingFile, environment::kCancelledPendingFile,
};

// What each list but the indexes says of its jobs.
struct EndingList {
  const char* file;
  const char* ending;
};
constexpr EndingList kEndingLists[] = {
    {environment::kCompletedFile, "Completed"}, {environment::kCompletedPendingFile, "Completed"},
    {environment::kErrorFile, "Error"},         {environment::kErrorPendingFile, "Error"},
    {environment::kCancelledFile, "Cancelled"}, {environment::kCancelledPendingFile, "Cancelled"},
};

class BoardMaker {
 public:
  void add_list(const std::string& file, std::string_view text) {
    std::size_t number = 0;
    for (const std::string_view line : base::lines_of(text)) {
      ++number;
      if (!line.empty()) add_line(file, number, line);
    }
  }

  void miss_list(const std::string& file, const base::Fault& fault) {
    board_.unread.push_back({file, fault});
  }

  void add_folders(const std::vector<std::string>& folders) {
    std::set<std::string> left(folders.begin(), folders.end());
    for (BoardJob& job : board_.jobs)
      job.has_folder = left.contains(job.job);
    if (!board_.unread.empty()) return;
    for (const BoardJob& job : board_.jobs)
      left.erase(job.job);
    board_.abandoned.assign(left.begin(), left.end());
  }

  Board take() { return std::move(board_); }

 private:
  void add_line(const std::string& file, std::size_t number, std::string_view line) {
    const auto [place, is_new] = places_.try_emplace(base::to_upper(line), board_.jobs.size());
    if (is_new) {
      const jobs::IndexLineReading reading = jobs::read_index_line(line);
      if (!reading.line) {
        places_.erase(place);
        board_.problems.push_back({file, number, std::string(line), reading.reason});
        return;
      }
      add_job(*reading.line, line);
    }
    auto& lists = board_.jobs[place->second].lists;
    if (lists.empty() || lists.back() != file) lists.push_back(file);
  }

  void add_job(const jobs::IndexLine& values, std::string_view line) {
    board_.jobs.push_back({values.job,
                           values.description,
                           values.site_name,
                           values.site_id,
                           values.device_id,
                           base::from_date_serial(values.start),
                           base::from_date_serial(values.creation),
                           {},
                           std::string(line),
                           false,
                           {}});
  }

  Board board_;
  std::unordered_map<std::string, std::size_t> places_;  // line in capitals to its job
};

}  // namespace

std::string BoardJob::ending() const {
  for (const EndingList& each : kEndingLists) {
    if (std::find(lists.begin(), lists.end(), each.file) != lists.end()) return each.ending;
  }
  return reported;
}

std::vector<BoardJob> unprocessed_jobs(const Board& board) {
  std::vector<BoardJob> found;
  std::copy_if(board.jobs.begin(), board.jobs.end(), std::back_inserter(found),
               [](const BoardJob& job) { return job.has_folder && !job.ending().empty(); });
  return found;
}

Board JobBoard::read() const {
  BoardMaker maker;
  for (const char* file : kBoardFiles) {
    std::string text;
    const auto fault = base::fault_of([&] { text = scheduler_.read_or_empty(file); });
    fault ? maker.miss_list(file, *fault) : maker.add_list(file, text);
  }
  maker.add_folders(scheduler_.job_folders());
  Board board = maker.take();
  std::erase_if(board.abandoned, [&](const std::string& name) {
    const std::string ending = scheduler_.reported_ending(name);
    if (ending.empty()) return false;
    board.jobs.push_back(job_from_script(scheduler_, name));
    board.jobs.back().has_folder = true;
    board.jobs.back().reported = static_cast<char>(ending[0] - 'a' + 'A') + ending.substr(1);
    return true;
  });
  return board;
}

Board JobBoard::read_all() const {
  Board board = read();
  if (!board.unread.empty()) throw board.unread.front().fault;
  return board;
}

BoardJob job_from_script(const jobs::SchedulerFiles& scheduler, const std::string& job_name) {
  BoardJob job;
  job.job = job_name;
  if (!jobs::is_job_name(job_name)) return job;
  const std::string name = job_name + "\\" + job_name + std::string(jobs::kScriptExtension);
  std::string text;
  base::fault_of([&] { text = scheduler.read_or_empty(name); });
  const auto script = jobs::read_script(text).script;
  if (!script) return job;
  job.description = script->header.description;
  job.site_name = script->header.site_name;
  job.site_id = script->header.site_id;
  job.device_id = script->header.qvr_id;
  if (const auto start = base::parse_serial(script->header.start_date))
    job.start = base::from_date_serial(*start);
  return job;
}

}  // namespace qvrcom::results
