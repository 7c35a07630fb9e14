#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "csv/csv_file.h"
#include "csv/row_order.h"

namespace qvrcom::csv {

// A cell of the table: the line counts in the shown order.
struct CellPlace {
  std::uint32_t line = 0;
  std::uint32_t column = 0;

  bool operator==(const CellPlace&) const = default;
};

enum class FindDirection { kForward, kBackward };

// Looks for the next cell that contains a text, without regard to case, from a cell on and once around the
// table; the cell itself comes last. A little at a time.
class FindTask {
 public:
  // File and order outlive the task. The text is UTF-8 and not empty; the order has at least one line.
  FindTask(CsvFile& file, const RowOrder& order, std::string_view text, CellPlace from,
           FindDirection direction);

  // Looks at about `lines` lines; answers whether there is more to do. Fault when the file cannot be read.
  bool step(std::uint32_t lines);

  const std::optional<CellPlace>& found() const { return found_; }

 private:
  bool look_at_next_line();
  std::optional<std::uint32_t> match(const Cells& cells, std::uint32_t from, std::uint32_t until) const;
  bool may_match(std::string_view row) const;
  bool matches(std::string_view cell) const;

  RowReader reader_;
  const RowOrder& order_;
  std::string folded_;
  bool ascii_;
  bool forward_;
  CellPlace from_;
  std::uint32_t line_;
  std::uint32_t visited_ = 0;  // the starting line is visited twice: its two halves
  std::optional<CellPlace> found_;
};

}  // namespace qvrcom::csv
