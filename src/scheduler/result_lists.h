#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/files.h"

namespace qvrcom::scheduler {

enum class Outcome { kCompleted, kError, kCancelled };

// "completed.sch", "error.sch" and "cancelled.sch": the index lines of finished jobs, as they stood in the
// index. Letter case tells no two lines apart.
class ResultLists {
 public:
  // `folder` is the scheduler folder, with a backslash at its end.
  ResultLists(platform::Files& files, std::string folder) : files_(files), folder_(std::move(folder)) {}

  // Takes in what the three files hold; a missing one is empty. Fault when one cannot be read.
  void load();

  // Whether the line stands in a list or has stood in one since this program runs.
  bool finished(std::string_view line) const;

  // Lists a line. When the file cannot be written the line is kept, and counts as finished all the same.
  void add(Outcome outcome, const std::string& line);

  // Writes the lines that could not be written before; why that failed again, or "".
  std::string write_kept();

  // Drops the lines that do not stand in `index_text`. A file without such a line is not touched.
  void drop_taken(std::string_view index_text);

 private:
  platform::Files& files_;
  std::string folder_;
  std::unordered_set<std::string> finished_;  // upper case
  std::vector<std::pair<Outcome, std::string>> kept_;
};

}  // namespace qvrcom::scheduler
