// Any bytes as a job's report: no report, or lines that are written as lines that read the same.
#include "protocol/job_report.h"

#include "entry.h"

void fuzz(std::string_view bytes) {
  using namespace qvrcom;
  const auto report = protocol::read_report(bytes);
  if (!report) return;
  std::string text = protocol::report_head() + "\r\n";
  for (const protocol::ReportLine& line : report->lines)
    text += protocol::report_line_text(line) + "\r\n";
  const auto again = protocol::read_report(text);
  require(again && again->lines == report->lines);
}
