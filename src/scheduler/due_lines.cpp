#include "scheduler/due_lines.h"

#include <algorithm>

#include "base/text.h"
#include "protocol/index_line.h"
#include "protocol/job_name.h"

namespace qvrcom::scheduler {
namespace {

constexpr std::size_t kLongestScript = 256;  // bytes: more than "\NAME\NAME.scr" can have
constexpr std::size_t kMostNamed = 16;

}  // namespace

WaitingLine waiting_line(std::string_view text) {
  protocol::IndexLineReading reading = protocol::read_index_line(text);
  WaitingLine line;
  if (!reading.line) {
    line.problem = "A line of the job index is damaged: " + reading.reason + ".";
    return line;
  }
  line.job = std::move(reading.line->job);
  line.description = std::move(reading.line->description);
  line.creation = reading.line->creation;
  line.start = reading.line->start;
  line.repeats = !reading.line->interval.empty() || !reading.line->period.empty();
  return line;
}

Due due(const WaitingLine& line, base::LocalTime now) {
  return protocol::due(line.creation, line.start, line.repeats, now);
}

std::string left_alone_sentence(const WaitingLine& line, Due due) {
  if (due == Due::kRepeating)
    return "The job " + line.job + " has an interval or a period and is left alone: nothing repeats here.";
  const auto start = base::from_date_serial(line.start);
  return "The job " + line.job + " is left alone until its start" +
         (start ? ", " + base::clock_text(*start) : std::string{}) +
         ", has come and jobs are submitted again.";
}

std::vector<std::string> jobs_named_in(std::string_view damaged_line) {
  std::vector<std::string> names;
  auto at = damaged_line.find(protocol::kScriptExtension);
  for (; at != std::string_view::npos && names.size() < kMostNamed;
       at = damaged_line.find(protocol::kScriptExtension, at + 1)) {
    const std::size_t end = at + protocol::kScriptExtension.size();
    const std::size_t begin = end - std::min(end, kLongestScript);
    const std::string_view name = protocol::job_of_script(damaged_line.substr(begin, end - begin));
    if (!name.empty() && std::find(names.begin(), names.end(), name) == names.end()) names.emplace_back(name);
  }
  return names;
}

bool IndexLines::take(std::string text) {
  if (text == text_) return false;
  text_ = std::move(text);
  read_.clear();
  lines_ = base::lines_of(text_);
  std::erase_if(lines_, [](std::string_view line) { return line.empty(); });
  return true;
}

const WaitingLine& IndexLines::line(std::size_t number) {
  const auto place = read_.find(number);
  if (place != read_.end()) return place->second;
  return read_.emplace(number, waiting_line(lines_[number])).first->second;
}

}  // namespace qvrcom::scheduler
