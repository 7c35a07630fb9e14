#include "scheduler/result_lists.h"

#include <array>

#include "base/text.h"
#include "environment/names.h"
#include "scheduler/fault_of.h"

namespace qvrcom::scheduler {
namespace {

constexpr std::array<const char*, 3> kListFiles{environment::kCompletedFile, environment::kErrorFile,
                                                environment::kCancelledFile};

const char* file_of(Outcome outcome) {
  return kListFiles[static_cast<std::size_t>(outcome)];
}

std::string read_or_empty(const platform::Files& files, const std::string& path) {
  return files.file_exists(path) ? files.read(path) : std::string{};
}

std::unordered_set<std::string> upper_lines(std::string_view text) {
  std::unordered_set<std::string> lines;
  for (const std::string_view line : base::lines_of(text))
    lines.insert(base::to_upper(line));
  return lines;
}

}  // namespace

void ResultLists::load() {
  for (const char* file : kListFiles)
    finished_.merge(upper_lines(read_or_empty(files_, folder_ + file)));
}

bool ResultLists::finished(std::string_view line) const {
  return finished_.contains(base::to_upper(line));
}

void ResultLists::add(Outcome outcome, const std::string& line) {
  finished_.insert(base::to_upper(line));
  kept_.emplace_back(outcome, line);
}

std::string ResultLists::write_kept() {
  const auto fault = fault_of([this] {
    while (!kept_.empty()) {
      const auto& [outcome, line] = kept_.front();
      files_.append(folder_ + file_of(outcome), line + std::string(base::kCrLf));
      kept_.erase(kept_.begin());
    }
  });
  return fault ? fault->description() + ". " + fault->detail() : std::string{};
}

void ResultLists::drop_taken(std::string_view index_text) {
  const auto standing = upper_lines(index_text);
  for (const char* file : kListFiles) {
    const std::string text = read_or_empty(files_, folder_ + file);
    const auto lines = base::lines_of(text);
    std::vector<std::string> left;
    for (const std::string_view line : lines) {
      if (standing.contains(base::to_upper(line))) left.emplace_back(line);
    }
    if (left.size() != lines.size()) files_.replace(folder_ + file, base::with_line_ends(left));
  }
}

}  // namespace qvrcom::scheduler
