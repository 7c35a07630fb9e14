#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace qvrcom::cli {

// Rows of cells in columns, two blanks apart. The first rows are held back until the widths can be told from
// them, so that a table of any length can be written as it comes; a wider cell that comes later stands out.
class TextTable {
 public:
  explicit TextTable(std::ostream& out) : out_(out) {}
  ~TextTable() { write_held_rows(); }
  TextTable(const TextTable&) = delete;
  TextTable& operator=(const TextTable&) = delete;

  // Foreign texts are welcome. Rows may differ in length.
  void add(const std::vector<std::string>& cells);

 private:
  void write_held_rows();
  void write(const std::vector<std::string>& cells);

  std::ostream& out_;
  std::vector<std::vector<std::string>> held_;
  std::vector<std::size_t> widths_;
  bool holding_ = true;
};

}  // namespace qvrcom::cli
