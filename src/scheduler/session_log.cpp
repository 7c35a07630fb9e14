#include "scheduler/session_log.h"

#include <array>
#include <chrono>
#include <cstdio>

#include "base/text.h"
#include "protocol/job_name.h"
#include "scheduler/fault_of.h"

namespace qvrcom::scheduler {
namespace {

constexpr std::string_view kReasonMark = "Reason: ";
constexpr std::size_t kStampWidth = 20;             // stamp and blank
constexpr std::uint64_t kLargestLog = 1ULL << 20U;  // bytes; then its older half goes

std::string log_path(const std::string& folder, std::string_view name) {
  return folder + std::string(name) + ".log";
}

}  // namespace

std::string log_stamp(base::LocalTime moment) {
  const auto day = std::chrono::floor<std::chrono::days>(moment);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(moment - day);
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02ld:%02ld:%02ld", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<long>(time.hours().count()), static_cast<long>(time.minutes().count()),
                static_cast<long>(time.seconds().count()));
  return text.data();
}

void SessionLog::write(std::string_view log_name, std::string_view sentence) {
  const std::string path = log_path(folder_, log_name);
  fault_of([&] {
    if (!files_.folder_exists(folder_)) files_.make_folder(folder_);
    make_room(path);
    files_.append(path, log_stamp(clock_.now()) + ' ' + std::string(sentence) + std::string(base::kCrLf));
  });
}

void SessionLog::write_reason(std::string_view log_name, std::string_view reason) {
  write(log_name, std::string(kReasonMark) + std::string(reason));
}

void SessionLog::make_room(const std::string& path) {
  if (!files_.file_exists(path) || files_.length(path) < kLargestLog) return;
  const std::string text = files_.read(path);
  const auto line_end = text.find('\n', text.size() / 2);
  files_.replace(path, line_end == std::string::npos ? std::string{} : text.substr(line_end + 1));
}

void CountedSentences::add(std::string sentence) {
  if (told_.size() < kMostTold)
    told_.push_back(std::move(sentence));
  else
    ++counted_;
}

void CountedSentences::write_to(SessionLog& log) {
  for (const std::string& sentence : told_)
    log.write(SessionLog::kProgram, sentence);
  if (counted_ > 0) log.write(SessionLog::kProgram, std::to_string(counted_) + ' ' + rest_);
  told_.clear();
  counted_ = 0;
}

std::string last_reason(const platform::Files& files, const std::string& logs_folder,
                        const std::string& job_name) {
  std::string reason;
  const std::string path = log_path(logs_folder, job_name);
  if (!protocol::is_job_name(job_name) || !files.file_exists(path)) return reason;
  const std::string text = files.read(path);
  for (std::string_view line : base::lines_of(text)) {
    line.remove_prefix(std::min(line.size(), kStampWidth));
    if (line.starts_with(kReasonMark)) reason = line.substr(kReasonMark.size());
  }
  return reason;
}

}  // namespace qvrcom::scheduler
