#include "scheduler/result_lists.h"

#include <algorithm>
#include <unordered_set>

#include "base/fault.h"
#include "base/text.h"
#include "protocol/index_line.h"
#include "protocol/job_lists.h"

namespace qvrcom::scheduler {
namespace {

using protocol::kResultLists;

std::string joined(const std::vector<std::string>& lines) {
  std::string text = base::with_line_ends(lines);
  text.resize(text.size() - base::kCrLf.size());
  return text;
}

using LineSet = std::unordered_set<std::string_view, LineHash, LineEqual>;

LineSet lines_in(std::string_view text) {
  const auto lines = base::lines_of(text);
  return {lines.begin(), lines.end()};
}

}  // namespace

void ResultLists::load() {
  std::array<std::string, 3> texts;
  for (std::size_t i = 0; i < texts.size(); ++i)
    texts[i] = files_.read_or_empty(folder_ + kResultLists[i].file);
  for (auto& [line, finished] : finished_) {
    if (finished.standing == Standing::kListed) finished.standing = Standing::kDropped;
  }
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const Ending ending = kResultLists[i].ending;
    for (const std::string_view line : base::lines_of(texts[i])) {
      const auto place = finished_.try_emplace(std::string(line), Finished{ending, Standing::kListed}).first;
      if (place->second.standing != Standing::kKept) place->second = {ending, Standing::kListed};
    }
  }
}

const ResultLists::Finished* ResultLists::find(std::string_view line) const {
  const auto found = finished_.find(line);
  return found == finished_.end() ? nullptr : &found->second;
}

void ResultLists::add(Ending ending, std::string_view line) {
  finished_.insert_or_assign(std::string(line), Finished{ending, Standing::kKept});
  kept_for(ending).emplace_back(line);
}

void ResultLists::add_again(std::string_view line) {
  const auto found = finished_.find(line);
  if (found == finished_.end() || found->second.standing != Standing::kDropped) return;
  found->second.standing = Standing::kKept;
  kept_for(found->second.ending).emplace_back(line);
}

void ResultLists::write_kept() {
  trouble_.clear();
  for (const ResultList& list : kResultLists)
    write_kept_for(list);
}

void ResultLists::write_kept_for(const ResultList& list) {
  std::vector<std::string>& lines = kept_for(list.ending);
  if (lines.empty()) return;
  if (const auto fault = base::fault_of([&] { files_.append_line(folder_ + list.file, joined(lines)); })) {
    trouble_ = fault->description() + ". " + fault->detail();
    return;
  }
  for (const std::string& line : lines)
    finished_.find(line)->second.standing = Standing::kListed;
  lines.clear();
}

std::vector<std::string_view> ResultLists::kept() const {
  std::vector<std::string_view> all;
  for (const auto& lines : kept_)
    all.insert(all.end(), lines.begin(), lines.end());
  return all;
}

bool ResultLists::has_kept() const {
  return std::any_of(kept_.begin(), kept_.end(), [](const auto& lines) { return !lines.empty(); });
}

void ResultLists::drop_taken(std::string_view index_text) {
  const LineSet standing = lines_in(index_text);
  drop([&](std::string_view line) { return !standing.contains(line); });
}

void ResultLists::drop_gone(std::string_view index_text) {
  const LineSet standing = lines_in(index_text);
  drop([&](std::string_view line) {
    if (line.empty() || standing.contains(line)) return false;
    const auto reading = protocol::read_index_line(line);
    return reading.line && !files_.is_taken(folder_ + reading.line->job);
  });
}

void ResultLists::drop(const std::function<bool(std::string_view line)>& is_over) {
  for (const ResultList& list : kResultLists) {
    const std::string path = folder_ + list.file;
    const std::string text = files_.read_or_empty(path);
    const auto lines = base::lines_of(text);
    std::vector<std::string> left;
    std::vector<std::string_view> dropped;
    for (const std::string_view line : lines) {
      if (is_over(line)) {
        dropped.push_back(line);
      } else {
        left.emplace_back(line);
      }
    }
    if (dropped.empty()) continue;
    files_.replace(path, base::with_line_ends(left));
    for (const std::string_view line : dropped) {
      const auto found = finished_.find(line);
      const bool is_listed = found != finished_.end() && found->second.standing == Standing::kListed;
      if (is_listed) found->second.standing = Standing::kDropped;
    }
  }
}

}  // namespace qvrcom::scheduler
