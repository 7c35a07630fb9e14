#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/clock.h"
#include "platform/files.h"

namespace qvrcom::scheduler {

// Logs that people read: one file a job, "NAME.log", each line a time stamp and a full sentence, CR LF,
// readable by the user alone. What belongs to no job is in "JobPilot.log".
class RunLog {
 public:
  static constexpr const char* kProgram = "JobPilot";

  // `folder` ends in a backslash; it is made when the first line is written.
  RunLog(platform::Files& files, const platform::Clock& clock, std::string folder)
      : files_(files), clock_(clock), folder_(std::move(folder)) {}

  // A log that cannot be written stops nothing: what cannot be said is lost.
  void write(std::string_view log_name, std::string_view sentence);

  // Why a job did not end well.
  void write_reason(std::string_view log_name, std::string_view reason);

 private:
  void make_room(const std::string& path);

  platform::Files& files_;
  const platform::Clock& clock_;
  std::string folder_;
};

// Sentences of one kind, of which there may be a hundred thousand at a time: the first are written, the
// others counted.
class CountedSentences {
 public:
  // `rest` follows the count: "more jobs are left alone."
  explicit CountedSentences(std::string rest) : rest_(std::move(rest)) {}

  void add(std::string sentence);

  // Into the program's log; it starts over.
  void write_to(RunLog& log);

 private:
  static constexpr std::size_t kMostTold = 20;

  std::string rest_;
  std::vector<std::string> told_;
  std::size_t counted_ = 0;
};

}  // namespace qvrcom::scheduler
