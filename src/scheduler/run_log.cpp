#include "scheduler/run_log.h"

#include "base/fault.h"
#include "jobs/job_log.h"
#include "protocol/job_log.h"

namespace qvrcom::scheduler {
namespace {

constexpr std::uint64_t kLargestLog = 1ULL << 20U;  // bytes; then its older half goes

}  // namespace

void RunLog::write(std::string_view log_name, std::string_view sentence) {
  const std::string path = protocol::log_path(folder_, log_name);
  base::fault_of([&] {
    make_room(path);
    jobs::write_job_log(files_, clock_, folder_, std::string(log_name), sentence);
  });
}

void RunLog::write_reason(std::string_view log_name, std::string_view reason) {
  write(log_name, protocol::reason_sentence(reason));
}

void RunLog::make_room(const std::string& path) {
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

void CountedSentences::write_to(RunLog& log) {
  for (const std::string& sentence : told_)
    log.write(RunLog::kProgram, sentence);
  if (counted_ > 0) log.write(RunLog::kProgram, std::to_string(counted_) + ' ' + rest_);
  told_.clear();
  counted_ = 0;
}

}  // namespace qvrcom::scheduler
