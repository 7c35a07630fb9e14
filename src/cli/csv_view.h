#pragma once

#include <ostream>
#include <string>

#include "csv/csv_file.h"

namespace qvrcom::cli {

// A CSV file of any size on a stream, row by row, each of its tables or the one that `chosen` names; ends
// early when the stream fails. The file is indexed to its end and its tables are found.

// The caption's lines as "SiteName: USA_Office", then the tables, an empty line between them.
void write_csv_text(csv::CsvFile& file, const csv::Table* chosen, std::ostream& out);

// docs/command-line.md tells the shape. Each row stands on a line of its own.
void write_csv_json(csv::CsvFile& file, const csv::Table* chosen, const std::string& path, std::ostream& out);

struct FoundTable {
  const csv::Table& table;
  std::string remark;  // a sentence about another table that the name could mean; "" when there is none
};

// The table of that name, without regard to case, or else of that number from 1: so each table has a name
// that it is sure to be found by. Fault, which lists the tables there are, when there is no such table.
FoundTable find_table(const csv::CsvFile& file, const std::string& name);

}  // namespace qvrcom::cli
