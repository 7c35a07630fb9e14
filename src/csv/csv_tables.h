#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "csv/csv_index.h"
#include "csv/row_order.h"

namespace qvrcom::csv {

class CsvFile;

// Names and values, UTF-8; a line of one cell has no name.
using CaptionLines = std::vector<std::pair<std::string, std::string>>;

// One of the tables that stand one after the other in a file.
struct Table {
  std::string name;    // UTF-8; no other table of the file has it, whatever the letter case
  std::string title;   // UTF-8: the single cell in front of it; mostly empty
  CaptionLines lines;  // two-cell rows in front of it; those of the first table belong to the file
  RowRange rows;       // the header row is the first of them
  bool header = false;
  std::uint32_t columns = 0;
};

// Finds the tables of a file while it is being indexed, by the rules of docs/formats/statistics-csv.md. Looks
// at a few rows of each block, never at all of them.
class TableFinder {
 public:
  // Takes up what was indexed since the last time: tables are added at the end; the last one grows. A block
  // counts when enough of it is there to tell what it is. Always the same file; Fault when it cannot be read.
  void look(CsvFile& file);

  const std::vector<Table>& tables() const { return tables_; }

  // What the rows in front of the first table say about the file.
  const CaptionLines& caption() const { return caption_; }

 private:
  struct Head {
    std::uint32_t start = 0;  // the header row, or the first row without one
    bool header = false;
    std::optional<std::uint32_t> title = {};
  };

  void take_block(CsvFile& file, std::uint32_t number);
  Head find_head(CsvFile& file, RowRange rows) const;
  bool goes_on(CsvFile& file, const Head& head, RowRange rows) const;
  void add_table(CsvFile& file, const Head& head, const Block& block);
  void add_lines(CsvFile& file, RowRange rows, CaptionLines& lines);
  void give_up_title(CsvFile& file);
  void catch_up(const CsvIndex& index);
  void name_tables(CsvFile& file);

  std::vector<Table> tables_;
  CaptionLines caption_;
  std::uint32_t next_block_ = 0;
  std::optional<std::uint32_t> last_block_;  // of the last table: may have grown since
  std::optional<std::uint32_t> title_;       // a block of one cell: the title of the next one
};

// How many rows at the start of a file say which site it belongs to: "SiteName,..." and "UserSiteID,...".
std::uint32_t site_rows(CsvFile& file);

}  // namespace qvrcom::csv
