#include "cli/csv_view.h"

#include "base/fault.h"
#include "cli/json_text.h"
#include "cli/printable.h"
#include "cli/text_table.h"
#include "csv/text.h"

namespace qvrcom::cli {
namespace {

// Calls `use` with the cells of each row as UTF-8, as long as the stream takes them.
template <class Use>
void each_row(csv::CsvFile& file, csv::RowRange rows, const std::ostream& out, Use&& use) {
  csv::RowReader reader(file.index(), file.source());
  std::vector<std::string> texts;
  for (std::uint32_t row = rows.first; row < rows.end && out.good(); ++row) {
    const csv::Cells& cells = reader.cells(row);
    texts.resize(cells.size());
    for (std::size_t column = 0; column < cells.size(); ++column)
      texts[column] = csv::to_utf8(cells[column]);
    use(texts);
  }
}

// What is written: a file of one table as it is, without a word about tables.
struct Selection {
  csv::CaptionLines caption;
  std::vector<csv::Table> tables;
  bool several = false;
};

Selection select(const csv::CsvFile& file, const csv::Table* chosen) {
  const std::vector<csv::Table>& tables = file.tables();
  if (chosen == nullptr && tables.size() > 1) return {file.caption_of_tables(), tables, true};
  if (chosen != nullptr) {
    Selection one{file.caption_of_tables(), {*chosen}};
    csv::CaptionLines& own = one.tables[0].lines;
    one.caption.insert(one.caption.end(), own.begin(), own.end());
    own.clear();
    return one;
  }
  const csv::Caption& caption = file.caption();
  Selection whole{caption.lines, std::vector<csv::Table>(1)};
  whole.tables[0].rows = {caption.rows, file.index().row_count()};
  return whole;
}

void write_lines(const csv::CaptionLines& lines, std::ostream& out) {
  for (const auto& [name, value] : lines)
    out << printable(name) << (name.empty() ? "" : ": ") << printable(value) << '\n';
}

void write_json_lines(const csv::CaptionLines& lines, std::ostream& out) {
  out << "\"caption\":[";
  const char* separator = "";
  for (const auto& [name, value] : lines) {
    out << separator << json_line({name, value});
    separator = ",";
  }
  out << ']';
}

void write_json_rows(csv::CsvFile& file, csv::RowRange rows, std::ostream& out) {
  out << "\"rows\":[";
  const char* separator = "\n";
  each_row(file, rows, out, [&](const std::vector<std::string>& texts) {
    out << separator << json_line(texts);
    separator = ",\n";
  });
  out << "\n]}";
}

void write_json_tables(csv::CsvFile& file, const std::vector<csv::Table>& tables, std::ostream& out) {
  out << "\"tables\":[";
  const char* separator = "\n{";
  for (const csv::Table& table : tables) {
    out << separator;
    write_json_lines(table.lines, out);
    out << ",\"header\":" << (table.header ? "true" : "false") << ",\"name\":" << json_text(table.name)
        << ",\n";
    write_json_rows(file, table.rows, out);
    separator = ",\n{";
  }
  out << "\n]}";
}

}  // namespace

void write_csv_text(csv::CsvFile& file, const csv::Table* chosen, std::ostream& out) {
  const Selection selection = select(file, chosen);
  write_lines(selection.caption, out);
  bool first = selection.caption.empty();
  for (const csv::Table& each : selection.tables) {
    out << (first ? "" : "\n");
    first = false;
    if (!each.title.empty()) out << printable(each.title) << '\n';
    write_lines(each.lines, out);
    TextTable table(out);
    each_row(file, each.rows, out, [&](const std::vector<std::string>& texts) { table.add(texts); });
  }
}

void write_csv_json(csv::CsvFile& file, const csv::Table* chosen, const std::string& path,
                    std::ostream& out) {
  const Selection selection = select(file, chosen);
  out << '{';
  write_json_lines(selection.caption, out);
  out << ",\n\"file\":" << json_text(path) << ",\n";
  if (selection.several)
    write_json_tables(file, selection.tables, out);
  else
    write_json_rows(file, selection.tables[0].rows, out);
  out << '\n';
}

FoundTable find_table(const csv::CsvFile& file, const std::string& name) {
  const std::vector<csv::Table>& tables = file.tables();
  const std::string wanted = csv::fold_case(name);
  const csv::Table* named = nullptr;
  const csv::Table* numbered = nullptr;
  std::string known;
  for (std::size_t i = 0; i < tables.size(); ++i) {
    const std::string number = std::to_string(i + 1);
    if (csv::fold_case(tables[i].name) == wanted) named = &tables[i];
    if (number == name) numbered = &tables[i];
    known += "\n" + number + "  " + tables[i].name;
  }
  if (named != nullptr && numbered != nullptr && named != numbered)
    return {*named, "This is the table with the name \"" + name + "\". The table with this number is \"" +
                        numbered->name + "\"."};
  if (named != nullptr) return {*named, {}};
  if (numbered != nullptr) return {*numbered, {}};
  throw base::Fault("The file has no table \"" + name + "\".",
                    known.empty() ? "It has none at all."
                                  : "It has, by number and by name, which goes before a number:" + known);
}

}  // namespace qvrcom::cli
