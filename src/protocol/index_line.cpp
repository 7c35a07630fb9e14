#include "protocol/index_line.h"

#include "base/date_serial.h"
#include "base/number.h"
#include "base/text.h"
#include "protocol/job_name.h"

namespace qvrcom::protocol {
namespace {

// Fields between ";" and items between "^"; the last of both is the empty one behind the closing mark.
constexpr std::size_t kFields = 4;
constexpr std::size_t kItems = 9;

IndexLineReading no_line(std::string reason) {
  return {std::nullopt, std::move(reason)};
}

}  // namespace

IndexLineReading read_index_line(std::string_view text) {
  if (text.size() > kIndexLineLimit) return no_line("the line is too long");
  if (base::has_control_character(text)) return no_line("control characters in the line");
  const auto fields = base::split(text, ";");
  if (fields.size() != kFields || !fields[3].empty()) return no_line("not three fields closed by \";\"");
  const auto items = base::split(fields[1], "^");
  if (items.size() != kItems || !items[8].empty()) return no_line("not eight items closed by \"^\"");
  const auto creation = base::parse_number(fields[0]);
  if (!creation) return no_line("the creation value is no number");
  const auto start = base::parse_number(items[4]);
  if (!start) return no_line("the start is no number");
  const std::string_view job = job_of_script(fields[2]);
  if (job.empty()) return no_line("the script path names no job");
  const auto item = [&](std::size_t index) { return std::string(items[index]); };
  return {IndexLine{*creation, item(0), item(1), item(2), item(3), *start, item(5), item(6), item(7),
                    std::string(fields[2]), std::string(job)},
          {}};
}

Due due(double creation, double start, bool repeats, base::LocalTime now) {
  if (repeats) return Due::kRepeating;
  return start <= creation || start <= base::date_serial(now) ? Due::kNow : Due::kLater;
}

Due due(const IndexLine& line, base::LocalTime now) {
  return due(line.creation, line.start, !line.interval.empty() || !line.period.empty(), now);
}

std::string index_line_text(const IndexLineText& v) {
  std::string text = v.creation + ";";
  for (const std::string* item :
       {&v.created, &v.description, &v.site_name, &v.site_id, &v.start, &v.interval, &v.period, &v.device_id})
    text.append(*item).append("^");
  return text + ";" + v.script_path + ";";
}

}  // namespace qvrcom::protocol
