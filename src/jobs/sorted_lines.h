#pragma once

#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qvrcom::jobs {

// The lines of an index or list while many are added or removed, each step followed by a sorting of the file.
// Writing the file once with text() leaves the bytes that writing it after every step would leave.
class SortedLines {
 public:
  // The non-empty lines of a file.
  explicit SortedLines(std::string_view file_text);

  void add(std::string line);

  // Removes every line that equals `line`, letter case ignored.
  void remove(std::string_view line);

  // What a file goes through between two steps: writing takes the blanks at the two ends of the whole text,
  // so the first line loses its leading ones and the last its trailing ones, and reading drops a line that
  // has become empty. To be called between steps, not after the last.
  void settle();

  // The lines in order, joined by CR LF, without blanks at the two ends.
  std::string text() const;

 private:
  using Lines = std::multiset<std::string>;
  void replace(Lines::iterator line, std::string_view text);

  Lines lines_;
  std::multiset<std::pair<std::string, std::string>> folded_;  // (line in capitals, line)
};

// Sorts lines by their bytes and joins them the same way.
std::string sorted_text(std::vector<std::string_view> lines);

}  // namespace qvrcom::jobs
