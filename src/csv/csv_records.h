#pragma once

#include <string>
#include <string_view>
#include <vector>

// Short CSV texts that fit in memory as a whole; a file of any size is opened through csv/csv_index.h.
// The rules of quotes, separators and record ends are those of csv/record_scanner.h.
namespace qvrcom::csv {

using Record = std::vector<std::string>;

// Every record of the text with its fields' bytes as they are; a byte order mark at the start is dropped.
// Never fails: records may differ in length, an empty line is a record of one empty field.
std::vector<Record> parse_csv(std::string_view text);

// Whether the text ends inside a quotation mark that was never closed: it was cut, or its last record holds
// what should have been records of their own.
bool ends_in_quotes(std::string_view text);

// The field as it stands in a CSV file: in quotation marks, inner ones doubled, when it holds a separator, a
// quotation mark or a line end, or starts or ends with a blank; unchanged otherwise.
std::string quote_csv(std::string_view field);

// One record with its line end (CR LF). A record of one empty field is written as "" in quotation marks.
std::string csv_line(const Record& record);

}  // namespace qvrcom::csv
