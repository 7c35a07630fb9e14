// Any bytes as a job's report: no report, or lines that are written as lines that read the same.
#include "jobs/job_report.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qvrcom;
  const auto report = jobs::read_report({reinterpret_cast<const char*>(data), size});
  if (!report) return 0;
  std::string text = jobs::report_head() + "\r\n";
  for (const jobs::ReportLine& line : report->lines)
    text += jobs::report_line_text(line) + "\r\n";
  const auto again = jobs::read_report(text);
  if (!again || again->lines != report->lines) std::abort();
  return 0;
}
