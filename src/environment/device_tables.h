#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qvrcom::environment {

// What is done with a table of a device's configuration, each a family of commands.
enum TableUse : unsigned {
  kDelete = 1,     // all rows of one partition
  kGet = 2,        // the nodes of one partition
  kDuplicate = 4,  // one node, the details of one node, or one style
};

enum class TableKind { kStatistics, kDetail, kNode, kStyle };

// A table whose rows belong to one partition of one configuration. The columns stand in the order in which a
// copy names them, blanks between them.
struct DeviceTable {
  TableKind kind;
  std::string_view name;
  unsigned uses;
  std::string_view columns;
};

std::span<const DeviceTable> device_tables();

// The columns of the table QVRSettings, which is copied whole.
extern const std::string_view kSettingsColumns;

std::vector<std::string_view> column_list(std::string_view columns);

}  // namespace qvrcom::environment
