#include "results/job_board.h"

#include <unordered_map>

#include "base/text.h"
#include "environment/names.h"
#include "jobs/index_line.h"

namespace qvrcom::results {
namespace {

constexpr const char* kBoardFiles[] = {
    environment::kIndexFile,        environment::kRescheduleFile,       environment::kCompletedFile,
    environment::kErrorFile,        environment::kCancelledFile,        environment::kCompletedPendingFile,
    environment::kErrorPendingFile, environment::kCancelledPendingFile,
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
                           std::string(line)});
  }

  Board board_;
  std::unordered_map<std::string, std::size_t> places_;  // line in capitals to its job
};

}  // namespace

Board JobBoard::read() const {
  BoardMaker maker;
  for (const char* file : kBoardFiles)
    maker.add_list(file, scheduler_.read_or_empty(file));
  return maker.take();
}

}  // namespace qvrcom::results
