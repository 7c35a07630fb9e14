#include "csv/csv_records.h"

#include <cstdint>
#include <utility>

#include "base/text.h"
#include "csv/record_scanner.h"

namespace qvrcom::csv {
namespace {

struct Collector {
  std::vector<Record> records;
  std::string field;

  void begin_record(std::uint64_t) { records.emplace_back(); }
  void content(std::string_view piece) { field += piece; }
  void end_field() { records.back().push_back(std::exchange(field, {})); }
  void end_record() {}
};

struct NoSink {
  void begin_record(std::uint64_t) {}
  void content(std::string_view) {}
  void end_field() {}
  void end_record() {}
};

std::string_view without_mark(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  return text;
}

}  // namespace

std::vector<Record> parse_csv(std::string_view text) {
  Collector collector;
  RecordScanner scanner(collector);
  scanner.feed(without_mark(text));
  scanner.finish();
  return std::move(collector.records);
}

bool ends_in_quotes(std::string_view text) {
  NoSink none;
  RecordScanner scanner(none);
  scanner.feed(without_mark(text));
  return scanner.finish();
}

std::string quote_csv(std::string_view field) {
  const bool blank_edge = field.starts_with(' ') || field.ends_with(' ');
  if (!blank_edge && field.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(field);
  std::string quoted = "\"";
  for (const char byte : field) {
    if (byte == '"') quoted += '"';
    quoted += byte;
  }
  return quoted += '"';
}

std::string csv_line(const Record& record) {
  std::string line;
  for (const std::string& field : record) {
    if (&field != &record.front()) line += kSeparator;
    line += quote_csv(field);
  }
  if (record.size() == 1 && line.empty()) line = "\"\"";
  return line.append(base::kCrLf);
}

}  // namespace qvrcom::csv
