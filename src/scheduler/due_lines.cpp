#include "scheduler/due_lines.h"

#include "scheduler/session_log.h"

namespace qvrcom::scheduler {

Due due(const jobs::IndexLine& line, base::LocalTime now) {
  if (!line.interval.empty() || !line.period.empty()) return Due::kRepeating;
  return line.start <= line.creation || line.start <= base::date_serial(now) ? Due::kNow : Due::kLater;
}

std::string left_alone_sentence(const jobs::IndexLine& line, Due due) {
  if (due == Due::kRepeating)
    return "The job " + line.job + " has an interval or a period and is left alone: nothing repeats here.";
  const auto start = base::from_date_serial(line.start);
  return "The job " + line.job + " is left alone until its start" +
         (start ? ", " + log_stamp(*start) : std::string{}) + ", has come and jobs are submitted again.";
}

}  // namespace qvrcom::scheduler
