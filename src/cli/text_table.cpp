#include "cli/text_table.h"

#include <algorithm>
#include <ostream>

#include "cli/printable.h"

namespace qvrcom::cli {
namespace {

constexpr std::size_t kHeldRows = 256;
constexpr std::size_t kWidestColumn = 48;

}  // namespace

void TextTable::add(const std::vector<std::string>& cells) {
  std::vector<std::string> safe(cells.size());
  std::transform(cells.begin(), cells.end(), safe.begin(), printable);
  if (!holding_) return write(safe);
  widths_.resize(std::max(widths_.size(), safe.size()));
  for (std::size_t i = 0; i < safe.size(); ++i)
    widths_[i] = std::max(widths_[i], std::min(width_of(safe[i]), kWidestColumn));
  held_.push_back(std::move(safe));
  if (held_.size() == kHeldRows) write_held_rows();
}

void TextTable::write_held_rows() {
  for (const std::vector<std::string>& cells : held_)
    write(cells);
  held_.clear();
  holding_ = false;
}

void TextTable::write(const std::vector<std::string>& cells) {
  std::string line;
  std::size_t gap = 0;  // blanks before the next cell that is not empty
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (!cells[i].empty()) {
      line.append(gap, ' ');
      line += cells[i];
      gap = 0;
    }
    const std::size_t width = i < widths_.size() ? widths_[i] : 0;
    const std::size_t taken = width_of(cells[i]);
    gap += (width > taken ? width - taken : 0) + 2;
  }
  out_ << line << '\n';
}

}  // namespace qvrcom::cli
