#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/date_serial.h"
#include "protocol/index_line.h"

namespace qvrcom::scheduler {

using protocol::Due;

// What has to be known of an index line before its turn comes.
struct WaitingLine {
  std::string job;
  std::string description;
  double creation = 0;  // date serials
  double start = 0;
  bool repeats = false;  // it has an interval or a period
  std::string
      problem;  // why it is no index line, a full sentence; then the others are empty. "" when it is one
};

// Takes an index line apart.
WaitingLine waiting_line(std::string_view text);

Due due(const WaitingLine& line, base::LocalTime now);

// Why a line that is not due is left alone, as a full sentence.
std::string left_alone_sentence(const WaitingLine& line, Due due);

// The jobs whose scripts a damaged line still names; several where lines ran together.
std::vector<std::string> jobs_named_in(std::string_view damaged_line);

// The lines of "index.sch" as they were read last, the empty ones left out. A line is taken apart when it is
// first asked for, and once.
class IndexLines {
 public:
  IndexLines() = default;
  IndexLines(const IndexLines&) = delete;
  IndexLines& operator=(const IndexLines&) = delete;

  // The text of the file. False, and nothing changes, when it is the same as before.
  bool take(std::string text);

  std::size_t bytes() const { return text_.size(); }
  std::size_t size() const { return lines_.size(); }
  std::string_view text(std::size_t number) const { return lines_[number]; }
  const WaitingLine& line(std::size_t number);

 private:
  std::string text_;
  std::vector<std::string_view> lines_;  // into the text
  std::unordered_map<std::size_t, WaitingLine> read_;
};

}  // namespace qvrcom::scheduler
