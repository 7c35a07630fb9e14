#include "components/configuration_rows.h"

#include <map>
#include <set>

#include "environment/device_tables.h"

namespace qvrcom::components {
namespace {

using devicefiles::NodeName;
using environment::DeviceTable;
using environment::TableKind;

struct Column {
  const char* name;
  base::Field value;
};

base::Field flag_field(bool value) {
  return value ? "1" : "0";
}

// The settings row of the partition takes the columns; it is added when there is none.
void set_settings(platform::Database& database, const PartitionKey& key, const std::vector<Column>& columns) {
  const std::string where = " WHERE ConfigID = :p1 AND PartitionID = :p2";
  if (run(database, "SELECT ConfigID FROM QVRSettings" + where, {key.configuration, key.partition}).empty())
    RowInserter(database, "QVRSettings", {"ConfigID", "PartitionID"}).add({key.configuration, key.partition});
  std::vector<base::Field> values{key.configuration, key.partition};
  std::string list;
  for (const Column& column : columns) {
    values.push_back(column.value);
    list += (list.empty() ? "" : ", ") + std::string(column.name) + " = :p" + std::to_string(values.size());
  }
  run(database, "UPDATE QVRSettings SET " + list + where, std::move(values));
}

std::vector<Column> system_columns(const devicefiles::SystemSettings& settings) {
  return {{"Machine_Type_ID", number_field(settings.machine_type)},
          {"MaxPartitionNo", number_field(settings.highest_partition)},
          {"CardVariant", number_field(settings.card_variant)},
          {"Impedance", number_field(settings.impedance)},
          {"CountryCode", number_field(settings.country_code)},
          {"ModemCountryCode", number_field(settings.modem_country_code)},
          {"Embedded_Remote_Line", number_field(settings.remote_line)},
          {"FrontPanelAccess", flag_field(settings.front_panel_access)},
          {"ModemAccess", flag_field(settings.modem_access)}};
}

void add_node(std::vector<Column>& columns, const char* type_column, const char* number_column,
              const NodeName& node) {
  const bool some = node != NodeName{};
  columns.push_back(
      {type_column, some ? base::Field(std::string(devicefiles::node_type_word(node.type))) : std::nullopt});
  columns.push_back({number_column, some ? number_field(node.number) : std::nullopt});
}

std::vector<Column> partition_columns(const devicefiles::PartitionSettings& settings) {
  std::vector<Column> columns{{"LineAssignment", number_field(settings.line_assignment)},
                              {"MsgType", number_field(settings.message_type)},
                              {"PartitionEnabled", flag_field(settings.enabled)}};
  add_node(columns, "StartNodeType", "StartNodeNumber", settings.start);
  add_node(columns, "RemoteModeType", "RemoteModeNumber", settings.remote);
  return columns;
}

void store_settings(platform::Database& database, const std::string& configuration,
                    const devicefiles::SystemImage& image) {
  std::set<std::string> there;
  for (const devicefiles::PartitionName& partition : image.partitions) {
    there.insert(std::to_string(partition.number));
    set_settings(database, {configuration, std::to_string(partition.number)}, system_columns(image.settings));
  }
  for (const base::Row row :
       run(database, "SELECT PartitionID FROM QVRSettings WHERE ConfigID = :p1", {configuration})) {
    const std::string partition = row.text("PartitionID");
    if (there.contains(partition)) continue;
    run(database, "DELETE FROM QVRSettings WHERE ConfigID = :p1 AND PartitionID = :p2",
        {configuration, partition});
  }
}

void remove_configuration(platform::Database& database, const char* table, const char* column,
                          const std::string& configuration) {
  run(database, std::string("DELETE FROM ") + table + " WHERE " + column + " = :p1", {configuration});
}

void store_partitions(platform::Database& database, const std::string& configuration,
                      const devicefiles::SystemImage& image) {
  remove_configuration(database, "Partition_Settings", "Config_ID", configuration);
  RowInserter rows(database, "Partition_Settings", {"Config_ID", "PartitionID", "Name"});
  for (const devicefiles::PartitionName& partition : image.partitions)
    rows.add({configuration, number_field(partition.number), partition.name});
}

void store_lines(platform::Database& database, const std::string& configuration,
                 const devicefiles::SystemImage& image) {
  remove_configuration(database, "Used_Lines", "Config_ID", configuration);
  RowInserter rows(database, "Used_Lines",
                   {"Config_ID", "Base_Slot_No", "Slot_Offset", "Line", "RTQA_Option"});
  for (const devicefiles::UsedLine& line : image.lines) {
    rows.add({configuration, number_field(line.base_slot), number_field(line.offset), number_field(line.line),
              number_field(line.rtqa_option)});
  }
  remove_configuration(database, "RTQAConfig", "ConfigID", configuration);
  RowInserter(database, "RTQAConfig", {"ConfigID", "SwitchType"})
      .add({configuration, number_field(image.settings.switch_type)});
}

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

// Brings the partition's nodes in line with `nodes`: others go with their details and styles, new ones come,
// and a node that stays takes its description and keeps its other columns. Inside the caller's transaction.
void store_nodes(platform::Database& database, const PartitionKey& key,
                 const std::vector<devicefiles::PartitionNode>& nodes) {
  std::map<std::size_t, Descriptions> by_type;
  for (const devicefiles::PartitionNode& node : nodes)
    by_type[node.node.type - 1][std::to_string(node.node.number)] = node.description;
  for (std::size_t type = 0; type < devicefiles::kNodeTypeWords.size(); ++type)
    store_type(database, key, type, by_type[type]);
}

}  // namespace

void store_system_image(platform::Database& database, const std::string& configuration,
                        const devicefiles::SystemImage& image) {
  database.transaction([&] {
    store_settings(database, configuration, image);
    store_partitions(database, configuration, image);
    store_lines(database, configuration, image);
  });
}

void store_partition_image(platform::Database& database, const PartitionKey& key,
                           const devicefiles::PartitionImage& image) {
  database.transaction([&] {
    set_settings(database, key, partition_columns(image.settings));
    store_nodes(database, key, image.nodes);
  });
}

}  // namespace qvrcom::components
