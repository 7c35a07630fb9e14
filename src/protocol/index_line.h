#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "base/date_serial.h"

// One line of the job index, docs/formats/index.md.
namespace qvrcom::protocol {

struct IndexLine {
  double creation = 0;  // date serial
  std::string created;  // "dd/mm/yyyy hh:mm:ss"
  std::string description;
  std::string site_name;
  std::string site_id;  // the user's own identifier
  double start = 0;     // date serial
  std::string interval;
  std::string period;
  std::string device_id;  // the device's key in the site book
  std::string script_path;
  std::string job;  // the job's name, taken from the script path
};

inline constexpr std::size_t kIndexLineLimit = 4096;

struct IndexLineReading {
  std::optional<IndexLine> line;
  std::string reason;  // when it is no index line
};

// Reads a line without its line end. The script path must name a job ("...\NAME\NAME.scr"); in which folder
// that lies is left to the caller.
IndexLineReading read_index_line(std::string_view text);

enum class Due { kNow, kLater, kRepeating };

// A line is due when its start is not later than its own creation value, or than now; a line with an interval
// or a period is another program's.
Due due(double creation, double start, bool repeats, base::LocalTime now);
Due due(const IndexLine& line, base::LocalTime now);

// The line's values as text, the way they are written.
struct IndexLineText {
  std::string creation, created, description, site_name, site_id, start, interval, period, device_id,
      script_path;
};
std::string index_line_text(const IndexLineText& values);

}  // namespace qvrcom::protocol
