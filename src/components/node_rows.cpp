#include "components/node_rows.h"

#include <map>

#include "environment/device_tables.h"

namespace qvrcom::components {
namespace {

using environment::DeviceTable;
using environment::TableKind;

constexpr const char* kPartition = " WHERE ConfigID = :p1 AND PartID = :p2";

// Numbers to descriptions of the nodes of one type.
using Descriptions = std::map<std::string, std::string>;

// What a table holds beside a node of the type, and the column that names the node: "" when it holds nothing.
std::string attached_by(const DeviceTable& table, const std::string& word) {
  const std::string details = "Detail_" + word;
  if (table.kind == TableKind::kDetail && (table.name == details || table.name.starts_with(details + "_")))
    return "NodeMasterID";
  return table.kind == TableKind::kStyle && word == "STYLE" ? "StyleID" : "";
}

void remove_node(platform::Database& database, const PartitionKey& key, const std::string& word,
                 const std::string& number) {
  const std::vector<base::Field> values{key.configuration, key.partition, number};
  run(database, "DELETE FROM Node_" + word + kPartition + " AND NodeNumber = :p3", values);
  for (const DeviceTable& table : environment::device_tables()) {
    const std::string column = attached_by(table, word);
    if (column.empty()) continue;
    run(database, "DELETE FROM " + std::string(table.name) + kPartition + " AND " + column + " = :p3",
        values);
  }
}

// The node number 0 is no node of the device: its row is the suite's own and stays.
void store_type(platform::Database& database, const PartitionKey& key, std::size_t type,
                Descriptions wanted) {
  const std::string word(devicefiles::kNodeTypeWords[type]);
  const std::string table = "Node_" + word;
  for (const base::Row row :
       run(database, "SELECT NodeNumber FROM " + table + kPartition + " AND NodeNumber > 0",
           {key.configuration, key.partition})) {
    const std::string number = row.text("NodeNumber");
    const auto stays = wanted.find(number);
    if (stays == wanted.end()) {
      remove_node(database, key, word, number);
      continue;
    }
    run(database, "UPDATE " + table + " SET NodeDescription = :p4" + kPartition + " AND NodeNumber = :p3",
        {key.configuration, key.partition, number, stays->second});
    wanted.erase(stays);
  }
  RowInserter rows(database, table,
                   {"ConfigID", "PartID", "NodeTypeID", "NodeNumber", "NodeType", "NodeDescription"});
  for (const auto& node : wanted)
    rows.add({key.configuration, key.partition, std::to_string(type + 1), node.first, word, node.second});
}

}  // namespace

void store_nodes(platform::Database& database, const PartitionKey& key,
                 const std::vector<devicefiles::PartitionNode>& nodes) {
  std::map<std::size_t, Descriptions> by_type;
  for (const devicefiles::PartitionNode& node : nodes)
    by_type[node.node.type - 1][std::to_string(node.node.number)] = node.description;
  for (std::size_t type = 0; type < devicefiles::kNodeTypeWords.size(); ++type)
    store_type(database, key, type, by_type[type]);
}

}  // namespace qvrcom::components
