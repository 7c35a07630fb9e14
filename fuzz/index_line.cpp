// Any bytes as an index line: refused with a reason, or read into values that name a job and write back as a
// line with the same texts.
#include "protocol/index_line.h"

#include "base/date_serial.h"
#include "entry.h"
#include "jobs/job_index.h"
#include "protocol/job_name.h"

void fuzz(std::string_view text) {
  using namespace qvrcom;
  const std::string folder = jobs::JobIndex::Get_Folder(text);
  const protocol::IndexLineReading reading = protocol::read_index_line(text);
  require(reading.line.has_value() == reading.reason.empty());
  if (!reading.line) return;
  const protocol::IndexLine& line = *reading.line;
  require(protocol::is_job_name(line.job) && line.job == folder);
  const auto again = protocol::read_index_line(protocol::index_line_text(
      {base::serial_text(line.creation), line.created, line.description, line.site_name, line.site_id,
       base::serial_text(line.start), line.interval, line.period, line.device_id, line.script_path}));
  // Serials without an exponent may outgrow the line.
  require(!again.line || (again.line->creation == line.creation && again.line->start == line.start &&
                          again.line->description == line.description));
}
