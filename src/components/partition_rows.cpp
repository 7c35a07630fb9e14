#include "components/partition_rows.h"

#include "base/fault.h"
#include "base/number.h"

namespace qvrcom::components {

std::string configuration_number(const std::string& text) {
  return std::to_string(base::to_int32(text));
}

PartitionKey partition_key(const std::string& configuration, const std::string& partition) {
  const int number = base::to_int16(partition);
  if (number < 1 || number > 64)
    throw base::Fault(base::kOverflow, "Partitions are 1 to 64, not " + std::to_string(number) + ".");
  return {configuration_number(configuration), std::to_string(number)};
}

base::Rows run(platform::Database& database, const std::string& sql, std::vector<base::Field> values) {
  std::vector<platform::NamedValue> named;
  for (base::Field& value : values)
    named.push_back({"p" + std::to_string(named.size() + 1), std::move(value)});
  return database.run(sql, named);
}

base::Field number_field(std::uint32_t number) {
  return std::to_string(number);
}

RowInserter::RowInserter(platform::Database& database, std::string_view table,
                         const std::vector<std::string_view>& columns)
    : database_(database) {
  std::string names, values;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const std::string comma = i == 0 ? "" : ", ";
    names += comma + "\"" + std::string(columns[i]) + "\"";
    values += comma + ":p" + std::to_string(i + 1);
  }
  sql_ = "INSERT INTO \"" + std::string(table) + "\" (" + names + ") VALUES (" + values + ")";
}

void RowInserter::add(std::vector<base::Field> fields) {
  run(database_, sql_, std::move(fields));
}

}  // namespace qvrcom::components
