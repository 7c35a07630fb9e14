#include "scheduler/result_lists.h"

#include <algorithm>
#include <unordered_set>

#include "base/text.h"
#include "protocol/job_lists.h"
#include "scheduler/fault_of.h"

namespace qvrcom::scheduler {
namespace {

constexpr std::array<const char*, 3> kListFiles{protocol::kCompletedFile, protocol::kErrorFile,
                                                protocol::kCancelledFile};
constexpr std::array<Outcome, 3> kOutcomes{Outcome::kCompleted, Outcome::kError, Outcome::kCancelled};

const char* file_of(Outcome outcome) {
  return kListFiles[static_cast<std::size_t>(outcome)];
}

std::string joined(const std::vector<std::string>& lines) {
  std::string text = base::with_line_ends(lines);
  text.resize(text.size() - base::kCrLf.size());
  return text;
}

}  // namespace

void ResultLists::load() {
  std::array<std::string, 3> texts;
  for (const Outcome outcome : kOutcomes)
    texts[static_cast<std::size_t>(outcome)] = files_.read_or_empty(folder_ + file_of(outcome));
  for (auto& [line, finished] : finished_) {
    if (finished.standing == Standing::kListed) finished.standing = Standing::kDropped;
  }
  for (const Outcome outcome : kOutcomes) {
    for (const std::string_view line : base::lines_of(texts[static_cast<std::size_t>(outcome)])) {
      const auto place = finished_.try_emplace(std::string(line), Finished{outcome, Standing::kListed}).first;
      if (place->second.standing != Standing::kKept) place->second = {outcome, Standing::kListed};
    }
  }
}

const ResultLists::Finished* ResultLists::find(std::string_view line) const {
  const auto found = finished_.find(line);
  return found == finished_.end() ? nullptr : &found->second;
}

void ResultLists::add(Outcome outcome, std::string_view line) {
  finished_.insert_or_assign(std::string(line), Finished{outcome, Standing::kKept});
  kept_for(outcome).emplace_back(line);
}

void ResultLists::add_again(std::string_view line) {
  const auto found = finished_.find(line);
  if (found == finished_.end() || found->second.standing != Standing::kDropped) return;
  found->second.standing = Standing::kKept;
  kept_for(found->second.outcome).emplace_back(line);
}

void ResultLists::write_kept() {
  trouble_.clear();
  for (const Outcome outcome : kOutcomes)
    write_kept_for(outcome);
}

void ResultLists::write_kept_for(Outcome outcome) {
  std::vector<std::string>& lines = kept_for(outcome);
  if (lines.empty()) return;
  if (const auto fault = fault_of([&] { files_.append_line(folder_ + file_of(outcome), joined(lines)); })) {
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
  std::unordered_set<std::string_view, LineHash, LineEqual> standing;
  for (const std::string_view line : base::lines_of(index_text))
    standing.insert(line);
  for (const char* file : kListFiles) {
    const std::string text = files_.read_or_empty(folder_ + file);
    const auto lines = base::lines_of(text);
    std::vector<std::string> left;
    for (const std::string_view line : lines) {
      if (standing.contains(line)) left.emplace_back(line);
    }
    if (left.size() == lines.size()) continue;
    files_.replace(folder_ + file, base::with_line_ends(left));
    for (const std::string_view line : lines) {
      const auto found = finished_.find(line);
      const bool dropped = found != finished_.end() && !standing.contains(line);
      if (dropped && found->second.standing == Standing::kListed) found->second.standing = Standing::kDropped;
    }
  }
}

}  // namespace qvrcom::scheduler
