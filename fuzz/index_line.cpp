// Any bytes as an index line: refused with a reason, or read into values that name a job and write back as a
// line with the same texts.
#include "protocol/index_line.h"

#include <cstdint>
#include <cstdlib>

#include "base/date_serial.h"
#include "jobs/job_index.h"
#include "protocol/job_name.h"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qvrcom;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::string folder = jobs::JobIndex::Get_Folder(text);
  const protocol::IndexLineReading reading = protocol::read_index_line(text);
  require(reading.line.has_value() == reading.reason.empty());
  if (!reading.line) return 0;
  const protocol::IndexLine& line = *reading.line;
  require(protocol::is_job_name(line.job) && line.job == folder);
  const auto again = protocol::read_index_line(protocol::index_line_text(
      {base::serial_text(line.creation), line.created, line.description, line.site_name, line.site_id,
       base::serial_text(line.start), line.interval, line.period, line.device_id, line.script_path}));
  // Serials without an exponent may outgrow the line.
  require(!again.line || (again.line->creation == line.creation && again.line->start == line.start &&
                          again.line->description == line.description));
  return 0;
}
