#pragma once

#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/files.h"

namespace qvrcom::jobs {

// Adds a full sentence to the log of a job, behind what the scheduler wrote there: a time stamp, a blank, the
// sentence, CR LF. `logs_folder` ends in a backslash and is made when it is missing.
void write_job_log(platform::Files& files, const platform::Clock& clock, const std::string& logs_folder,
                   const std::string& job_name, std::string_view sentence);

// Why the job failed or was cancelled; "" when its log does not tell, or is not there.
std::string reason_of(const platform::Files& files, const std::string& logs_folder,
                      const std::string& job_name);

}  // namespace qvrcom::jobs
