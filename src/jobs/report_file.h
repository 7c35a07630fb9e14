#pragma once

#include <optional>
#include <string>

#include "platform/files.h"
#include "protocol/job_report.h"

namespace qvrcom::jobs {

// Nothing when there is none, or it is larger than kReportLimit. Fault when it cannot be read.
std::optional<protocol::JobReport> report_of(const platform::Files& files, const std::string& job_folder);

// Notes in the job's report, if there is one, that `result` is about to be made of an account's files, so
// that whoever finishes the job of a program that is killed next knows it again. Fault when that fails.
void note_taking(platform::Files& files, const std::string& job_folder, const std::string& account,
                 const std::string& result);

// Notes there what has come of the files, so that it is not made again, and answers with it: `result`, or a
// file that a killed program has made before, when both hold the same; then `result` is removed. When the
// report cannot be written, `result` is removed before the Fault: whoever finishes the job makes it.
std::string note_taken(platform::Files& files, const std::string& job_folder, const std::string& account,
                       const std::string& result);

}  // namespace qvrcom::jobs
