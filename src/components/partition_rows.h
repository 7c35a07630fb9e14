#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/rows.h"
#include "platform/database.h"

// Reading and writing the rows of a configuration.
namespace qvrcom::components {

// A partition of a configuration, as decimal texts.
struct PartitionKey {
  std::string configuration;
  std::string partition;
};

// The texts as the numbers that they are: the configuration any 32-bit number, the partition 1 to 64. Blanks
// around them are dropped. Fault when they are none.
std::string configuration_number(const std::string& text);
PartitionKey partition_key(const std::string& configuration, const std::string& partition);

// Runs a statement whose values stand as ":p1", ":p2" and so on.
base::Rows run(platform::Database& database, const std::string& sql, std::vector<base::Field> values);

base::Field number_field(std::uint32_t number);

// Adds rows to a table, all with the same columns.
class RowInserter {
 public:
  RowInserter(platform::Database& database, std::string_view table,
              const std::vector<std::string_view>& columns);

  // One field per column.
  void add(std::vector<base::Field> fields);

 private:
  platform::Database& database_;
  std::string sql_;
};

}  // namespace qvrcom::components
