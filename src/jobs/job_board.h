#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "base/date_serial.h"
#include "base/fault.h"
#include "jobs/scheduler_files.h"

namespace qvrcom::jobs {

// A job and the lists it stands in.
struct BoardJob {
  std::string job;  // the job's name
  std::string description;
  std::string site_name;
  std::string site_id;  // the user's own identifier
  std::string device_id;
  std::optional<base::LocalTime> start;  // nothing when the serial is no date
  std::optional<base::LocalTime> created;
  std::vector<std::string> lists;            // file names ("index.sch"), in the order in which they are read
  std::string line;                          // as it stands in the first of them
  bool has_folder = false;                   // its files are there
  std::optional<protocol::Ending> reported;  // in no list: how its report says that it ended
  std::string
      doubt;  // in no list, but a damaged line names its folder: which line, and what is wrong with it

  // As its lists or its report say; nothing when it has not ended.
  std::optional<protocol::Ending> ending() const;

  bool stands_in(const char* list) const;
  // It has ended, and nothing but lines in result and pending lists is left of it.
  bool has_gone() const;
};

// A line that is no index line.
struct BoardProblem {
  std::string file;
  std::size_t line = 0;  // counted from 1
  std::string text;
  std::string reason;
};

// A list that is there and cannot be read.
struct UnreadList {
  std::string file;
  base::Fault fault;
};

struct Board {
  std::vector<BoardJob> jobs;  // in the order in which they are met: indexes, result lists, pending lists;
                               // then those that a report or a damaged line alone tells of, whose `line` is
                               // ""
  std::vector<BoardProblem> problems;
  std::vector<std::string> abandoned;  // job folders that no list names, by name, in alphabetical order
  std::vector<UnreadList> unread;      // with one of them, no folder counts as such: the list may name it
};

// Those that have ended and whose files are still there: nobody has taken over what came of them.
std::vector<BoardJob> unprocessed_jobs(const Board& board);

// Job indexes, result lists, pending lists and job folders side by side, for people.
class JobBoard {
 public:
  explicit JobBoard(const SchedulerFiles& scheduler) : scheduler_(scheduler) {}

  enum class Extent {
    kEverything,
    kFolders,  // jobs whose folder is there; of other lines, damaged ones among them, nothing is told
  };

  // A missing list is empty.
  Board read(Extent extent = Extent::kEverything) const;
  // For whoever changes something by what the lists say: Fault when one of them cannot be read.
  Board read_all(Extent extent = Extent::kEverything) const;

  const SchedulerFiles& scheduler() const { return scheduler_; }

 private:
  const SchedulerFiles& scheduler_;
};

// A job that no list holds, as its script tells it; its name alone when there is no script that can be read.
BoardJob job_from_script(const SchedulerFiles& scheduler, const std::string& job_name);

}  // namespace qvrcom::jobs
