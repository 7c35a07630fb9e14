#include "cli/csv_view.h"

#include "cli/json_text.h"
#include "cli/printable.h"
#include "cli/text_table.h"
#include "csv/text.h"

namespace qvrcom::cli {
namespace {

// Calls `use` with the cells of each row of the table as UTF-8, as long as the stream takes them.
template <class Use>
void each_row(csv::CsvFile& file, std::uint32_t first, const std::ostream& out, Use&& use) {
  csv::RowReader reader(file.index(), file.source());
  std::vector<std::string> texts;
  for (std::uint32_t row = first; row < file.index().row_count() && out.good(); ++row) {
    const csv::Cells& cells = reader.cells(row);
    texts.resize(cells.size());
    for (std::size_t column = 0; column < cells.size(); ++column)
      texts[column] = csv::to_utf8(cells[column]);
    use(texts);
  }
}

}  // namespace

void write_csv_text(csv::CsvFile& file, std::ostream& out) {
  const csv::Caption caption = file.find_caption();
  for (const auto& [name, value] : caption.lines)
    out << printable(name) << ": " << printable(value) << '\n';
  if (!caption.lines.empty()) out << '\n';
  TextTable table(out);
  each_row(file, caption.rows, out, [&](const std::vector<std::string>& texts) { table.add(texts); });
}

void write_csv_json(csv::CsvFile& file, const std::string& path, std::ostream& out) {
  const csv::Caption caption = file.find_caption();
  out << "{\"caption\":[";
  const char* separator = "";
  for (const auto& [name, value] : caption.lines) {
    out << separator << json_line({name, value});
    separator = ",";
  }
  out << "],\n\"file\":" << json_text(path) << ",\n\"rows\":[";
  separator = "\n";
  each_row(file, caption.rows, out, [&](const std::vector<std::string>& texts) {
    out << separator << json_line(texts);
    separator = ",\n";
  });
  out << "\n]}\n";
}

}  // namespace qvrcom::cli
