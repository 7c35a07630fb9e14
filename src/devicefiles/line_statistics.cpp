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

void write_calls(ByteWriter& record, const LineCalls& calls) {
  record.u16("line", calls.line);
  for (const std::uint32_t value :
       {calls.calls, calls.answered, calls.busy, calls.no_answer, calls.seconds, calls.longest})
    record.u32(value);
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

std::string write_line_statistics(const LineStatistics& statistics) {
  SectionWriter file(kForm, {0, statistics.partition});
  write_counted(file, statistics.counted);
  file.section(kCallsSection, kCallsLength, statistics.calls, write_calls);
  file.section(kTransfersSection, kTransfersLength, statistics.transfers,
               [](ByteWriter& record, const LineTransfers& one) {
                 record.u16("line", one.line);
                 record.u32(one.transfers);
               });
  file.section(kActiveSection, kActiveLength, statistics.active,
               [](ByteWriter& record, const LinesActive& one) {
                 record.u16("lines active", one.lines);
                 record.u32(one.times);
                 record.u32(one.seconds);
               });
  return file.finish();
}

}  // namespace qvrcom::devicefiles
