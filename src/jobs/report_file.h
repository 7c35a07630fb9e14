#pragma once

#include <optional>
#include <string>

#include "platform/files.h"
#include "protocol/job_report.h"

namespace qvrcom::jobs {

// Nothing when there is none, or it is larger than kReportLimit. Fault when it cannot be read.
std::optional<protocol::JobReport> report_of(const platform::Files& files, const std::string& job_folder);

// Notes in the job's report, if there is one, what has come of an account's files, so that a program that is
// killed next does not make it again. When that fails, the file `result` is removed before the Fault: whoever
// finishes the job makes it.
void note_taken(platform::Files& files, const std::string& job_folder, const std::string& account,
                const std::string& result);

}  // namespace qvrcom::jobs
