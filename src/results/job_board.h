#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "base/date_serial.h"
#include "jobs/scheduler_files.h"

namespace qvrcom::results {

// A job and the lists it stands in.
struct BoardJob {
  std::string job;  // the job's name
  std::string description;
  std::string site_name;
  std::string site_id;  // the user's own identifier
  std::string device_id;
  std::optional<base::LocalTime> start;  // nothing when the serial is no date
  std::optional<base::LocalTime> created;
  std::vector<std::string> lists;  // file names ("index.sch"), in the order in which they are read
  std::string line;                // as it stands in the first of them
};

// A line that is no index line.
struct BoardProblem {
  std::string file;
  std::size_t line = 0;  // counted from 1
  std::string text;
  std::string reason;
};

struct Board {
  std::vector<BoardJob> jobs;  // in the order in which they are met: indexes, result lists, pending lists
  std::vector<BoardProblem> problems;
};

// Job indexes, result lists and pending lists side by side, for people.
class JobBoard {
 public:
  explicit JobBoard(const jobs::SchedulerFiles& scheduler) : scheduler_(scheduler) {}

  // A missing list is empty; Fault when one cannot be read.
  Board read() const;

 private:
  const jobs::SchedulerFiles& scheduler_;
};

}  // namespace qvrcom::results
