#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "jobs/line_key.h"
#include "platform/files.h"
#include "protocol/job_lists.h"

namespace qvrcom::scheduler {

using jobs::LineEqual;
using jobs::LineHash;
using protocol::Ending;
using protocol::ResultList;

// "completed.sch", "error.sch" and "cancelled.sch": the index lines of finished jobs, as they stood in the
// index.
class ResultLists {
 public:
  // Where a finished line stands now.
  enum class Standing { kListed, kKept, kDropped };
  struct Finished {
    Ending ending;
    Standing standing;
  };

  // `folder` is the scheduler folder, with a backslash at its end.
  ResultLists(platform::Files& files, std::string folder) : files_(files), folder_(std::move(folder)) {}

  // Takes in what the three files hold now; a missing one is empty. Fault when one cannot be read; then
  // nothing has changed.
  void load();

  // How the line ended: it stands in a list or has stood in one since this program runs. Null when it has
  // not. Good until the next call that changes something.
  const Finished* find(std::string_view line) const;

  // Keeps a line for its list; it counts as finished from now on.
  void add(Ending ending, std::string_view line);

  // Keeps a finished line that no list holds any more for its list, once more.
  void add_again(std::string_view line);

  // Writes the lines that are kept, one writing a file. What cannot be written stays kept, and `trouble` says
  // why; it is "" when nothing is kept any more.
  void write_kept();
  const std::string& trouble() const { return trouble_; }
  std::vector<std::string_view> kept() const;
  bool has_kept() const;

  // Drops the lines that do not stand in `index_text`. A file without such a line is not touched.
  void drop_taken(std::string_view index_text);

  // Likewise, those whose job has no folder any more alone: nothing can come of them. A damaged line stays.
  void drop_gone(std::string_view index_text);

 private:
  std::vector<std::string>& kept_for(Ending ending) { return kept_[static_cast<std::size_t>(ending)]; }
  void write_kept_for(const ResultList& list);
  void drop(const std::function<bool(std::string_view line)>& is_over);

  platform::Files& files_;
  std::string folder_;
  std::unordered_map<std::string, Finished, LineHash, LineEqual> finished_;
  std::array<std::vector<std::string>, 3> kept_;  // by ending
  std::string trouble_;
};

}  // namespace qvrcom::scheduler
