#include "devicefiles/line_statistics.h"

#include "devicefiles/sections.h"

namespace qvrcom::devicefiles {
namespace {

constexpr FileForm kForm{"QVLS", "line statistics"};
constexpr std::uint32_t kCallsSection = 2, kTransfersSection = 3, kActiveSection = 4;
constexpr std::size_t kCallsLength = 26, kTransfersLength = 6, kActiveLength = 10;
constexpr std::uint32_t kHighestLine = 999;

std::uint32_t read_line(ByteReader& record) {
  return record.in_range("line", 2, 1, kHighestLine);
}

LineCalls read_calls(ByteReader& record) {
  LineCalls calls;
  calls.line = read_line(record);
  calls.calls = record.u32("calls");
  calls.answered = record.u32("answered");
  calls.busy = record.u32("busy");
  calls.no_answer = record.u32("no answer");
  calls.seconds = record.u32("seconds in use");
  calls.longest = record.u32("longest call");
  return calls;
}

LinesActive read_active(ByteReader& record) {
  LinesActive active;
  active.lines = record.in_range("lines active", 2, 1, kHighestLine);
  active.times = record.u32("times");
  active.seconds = record.u32("seconds");
  return active;
}

}  // namespace

LineStatistics read_line_statistics(std::string_view bytes) {
  const SectionReader file(bytes, kForm);
  LineStatistics result;
  result.partition = read_partition(file);
  result.counted = read_counted(file);
  file.each(kCallsSection, "calls", kCallsLength,
            [&](ByteReader& record) { result.calls.push_back(read_calls(record)); });
  file.each(kTransfersSection, "transfers", kTransfersLength, [&](ByteReader& record) {
    LineTransfers transfers;
    transfers.line = read_line(record);
    transfers.transfers = record.u32("transfers");
    result.transfers.push_back(transfers);
  });
  file.each(kActiveSection, "lines active", kActiveLength,
            [&](ByteReader& record) { result.active.push_back(read_active(record)); });
  require_unique(file, result.calls, "lines", [](const LineCalls& one) { return one.line; });
  require_unique(file, result.transfers, "lines", [](const LineTransfers& one) { return one.line; });
  require_unique(file, result.active, "numbers of lines", [](const LinesActive& one) { return one.lines; });
  return result;
}

}  // namespace qvrcom::devicefiles
