#pragma once

#include <ostream>

#include "csv/csv_file.h"

namespace qvrcom::cli {

// A CSV file of any size on a stream, row by row; ends early when the stream fails.

// The caption's lines as "SiteName: USA_Office", then the table.
void write_csv_text(csv::CsvFile& file, std::ostream& out);

// docs/command-line.md tells the shape. Each row stands on a line of its own.
void write_csv_json(csv::CsvFile& file, const std::string& path, std::ostream& out);

}  // namespace qvrcom::cli
