#include "protocol/job_report.h"

#include <algorithm>
#include <array>

#include "base/text.h"
#include "protocol/job_name.h"

namespace qvrcom::protocol {
namespace {

constexpr std::string_view kHead = "QVRREPORT;1;";

// By ReportWord.
constexpr std::array<std::string_view, 9> kWords{"FETCHED", "STORING", "STORED", "DELETING", "DELETED",
                                                 "FAILED",  "ENDED",   "TAKEN",  "TAKING"};

std::string field(std::string text) {
  for (char& c : text) {
    if (c == ';') c = ',';
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
  }
  return text + ';';
}

std::optional<ReportLine> read_line(std::string_view line) {
  const auto fields = base::split(line, ";");
  const auto word = std::find(kWords.begin(), kWords.end(), fields[0]);
  if (fields.size() != 6 || !fields[5].empty() || word == kWords.end() || base::has_control_character(line))
    return std::nullopt;
  return ReportLine{static_cast<ReportWord>(word - kWords.begin()), std::string(fields[1]),
                    std::string(fields[2]), std::string(fields[3]), std::string(fields[4])};
}

bool any_of(const std::vector<ReportLine>& lines, ReportWord word) {
  return std::any_of(lines.begin(), lines.end(), [&](const ReportLine& line) { return line.word == word; });
}

}  // namespace

std::string report_line_text(const ReportLine& line) {
  return std::string(kWords[static_cast<std::size_t>(line.word)]) + ';' + field(line.account) +
         field(line.remote) + field(line.local) + field(line.text);
}

std::string report_head() {
  return std::string(kHead);
}

bool JobReport::has_deleted() const {
  return any_of(lines, ReportWord::kDeleting);
}

bool JobReport::has_changed() const {
  return has_deleted() || any_of(lines, ReportWord::kStoring);
}

std::optional<Ending> JobReport::ending() const {
  const auto last = std::find_if(lines.rbegin(), lines.rend(), [](const ReportLine& line) {
    return line.word != ReportWord::kTaken && line.word != ReportWord::kTaking;
  });
  if (last == lines.rend() || last->word != ReportWord::kEnded) return std::nullopt;
  const auto list = std::find_if(kResultLists.begin(), kResultLists.end(),
                                 [&](const ResultList& each) { return last->text == each.report_word; });
  return list == kResultLists.end() ? std::nullopt : std::optional(list->ending);
}

std::string JobReport::taken(std::string_view account) const {
  const auto found = std::find_if(lines.begin(), lines.end(), [&](const ReportLine& line) {
    return line.word == ReportWord::kTaken && line.account == account;
  });
  return found == lines.end() ? std::string{} : found->text;
}

std::vector<std::string> JobReport::begun(std::string_view account) const {
  std::vector<std::string> texts;
  for (const ReportLine& line : lines)
    if (line.word == ReportWord::kTaking && line.account == account) texts.push_back(line.text);
  return texts;
}

std::vector<std::string> JobReport::results() const {
  std::vector<std::string> texts;
  for (const ReportLine& line : lines)
    if (line.word == ReportWord::kTaken) texts.push_back(line.text);
  return texts;
}

std::optional<JobReport> read_report(std::string_view text) {
  text = text.substr(0, text.rfind('\n') + 1);
  const auto lines = base::lines_of(text);
  if (text.size() > kReportLimit || lines.empty() || lines.front() != kHead) return std::nullopt;
  JobReport report;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    if (auto line = read_line(lines[i])) report.lines.push_back(std::move(*line));
  }
  return report;
}

std::string report_path(const std::string& job_folder) {
  return job_file(job_folder, ".rpt");
}

}  // namespace qvrcom::protocol
