#include "jobs/sorted_lines.h"

#include <algorithm>

#include "base/text.h"

namespace qvrcom::jobs {
namespace {

template <class Lines>
std::string joined(const Lines& lines) {
  std::string text;
  for (const auto& line : lines) {
    if (&line != &*lines.begin()) text.append(base::kCrLf);
    text.append(line);
  }
  return std::string(base::trim(text));
}

}  // namespace

SortedLines::SortedLines(std::string_view file_text) {
  for (const std::string_view line : base::lines_of(file_text))
    if (!line.empty()) add(std::string(line));
}

void SortedLines::add(std::string line) {
  folded_.emplace(base::to_upper(line), line);
  lines_.insert(lines_.end(), std::move(line));  // mostly sorted already
}

void SortedLines::remove(std::string_view line) {
  const std::string folded = base::to_upper(line);
  auto each = folded_.lower_bound({folded, std::string{}});
  while (each != folded_.end() && each->first == folded) {
    lines_.erase(lines_.find(each->second));
    each = folded_.erase(each);
  }
}

void SortedLines::settle() {
  if (lines_.empty()) return;
  const auto first = lines_.begin();
  const auto last = std::prev(lines_.end());
  if (first == last) return replace(first, base::trim(*first));
  const std::string first_text = first->substr(std::min(first->find_first_not_of(' '), first->size()));
  const std::string last_text = last->substr(0, last->find_last_not_of(' ') + 1);  // npos + 1 is 0
  replace(first, first_text);
  replace(last, last_text);
}

std::string SortedLines::text() const {
  return joined(lines_);
}

void SortedLines::replace(Lines::iterator line, std::string_view text) {
  if (text.size() == line->size()) return;
  std::string rest(text);
  folded_.erase(folded_.find({base::to_upper(*line), *line}));
  lines_.erase(line);
  if (!rest.empty()) add(std::move(rest));
}

std::string sorted_text(std::vector<std::string_view> lines) {
  if (!std::is_sorted(lines.begin(), lines.end())) std::stable_sort(lines.begin(), lines.end());
  return joined(lines);
}

}  // namespace qvrcom::jobs
