#include "jobs/job_log.h"

#include "base/date_serial.h"
#include "base/text.h"

namespace qvrcom::jobs {

void write_job_log(platform::Files& files, const platform::Clock& clock, const std::string& logs_folder,
                   const std::string& job_name, std::string_view sentence) {
  if (!files.folder_exists(logs_folder)) files.make_folder(logs_folder);
  std::string line = base::clock_text(clock.now()) + " ";
  line.append(sentence).append(base::kCrLf);
  files.append(logs_folder + job_name + ".log", line);
}

}  // namespace qvrcom::jobs
