// Any bytes as a job's report: no report, or lines that are written as lines that read the same.
#include "protocol/job_report.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qvrcom;
  const auto report = protocol::read_report({reinterpret_cast<const char*>(data), size});
  if (!report) return 0;
  std::string text = protocol::report_head() + "\r\n";
  for (const protocol::ReportLine& line : report->lines)
    text += protocol::report_line_text(line) + "\r\n";
  const auto again = protocol::read_report(text);
  if (!again || again->lines != report->lines) std::abort();
  return 0;
}
