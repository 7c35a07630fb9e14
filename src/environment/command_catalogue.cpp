#include "environment/command_catalogue.h"

#include <algorithm>
#include <array>

#include "base/text.h"
#include "environment/device_tables.h"

namespace qvrcom::environment {
namespace {

using Texts = std::vector<std::string>;

// A column and what stands for it in the select list of a copy.
struct Replacement {
  std::string_view column;
  std::string_view parameter;
};

std::string quoted(std::string_view name) {
  return "`" + std::string(name) + "`";
}

// The only column whose name is a word of the original engine's SQL.
std::string as_column(std::string_view column) {
  return column == "Password" ? quoted(column) : std::string(column);
}

std::string joined(const Texts& texts, std::string_view separator) {
  std::string result;
  for (const std::string& text : texts) {
    if (!result.empty()) result += separator;
    result += text;
  }
  return result;
}

// "ConfigID = `Given_ConfigID` AND PartID = `Given_PartID`"
std::string condition(std::initializer_list<Replacement> tests) {
  Texts parts;
  for (const Replacement& test : tests)
    parts.push_back(std::string(test.column) + " = " + quoted(test.parameter));
  return joined(parts, " AND ");
}

Texts insert_list(std::string_view columns) {
  Texts list;
  for (const std::string_view column : column_list(columns))
    list.push_back(as_column(column));
  return list;
}

Texts select_list(std::string_view columns, std::initializer_list<Replacement> replacements) {
  Texts list;
  for (const std::string_view column : column_list(columns)) {
    const auto* found = std::find_if(replacements.begin(), replacements.end(),
                                     [&](const Replacement& one) { return one.column == column; });
    list.push_back(found == replacements.end() ? as_column(column) : std::string(found->parameter));
  }
  return list;
}

Command delete_partition(const DeviceTable& table) {
  const std::string name(table.name);
  const std::string_view partition = table.kind == TableKind::kStatistics ? "PartitionID" : "PartID";
  return {"Delete_" + name,
          "DELETE FROM " + name + " WHERE " +
              condition({{"ConfigID", "Given_ConfigID"}, {partition, "Given_PartitionID"}}),
          {"Given_ConfigID", "Given_PartitionID"}};
}

Command get_nodes(const DeviceTable& table) {
  const std::string name(table.name);
  // The one table whose query is written with bare names in parentheses.
  const std::string where =
      name == "Node_DBN"
          ? "(ConfigID = Given_ConfigID) AND (PartID = Given_PartID) AND (NodeNumber > 0)"
          : condition({{"ConfigID", "Given_ConfigID"}, {"PartID", "Given_PartID"}}) + " AND NodeNumber > 0";
  return {"Get_" + name,
          "SELECT * FROM " + name + " WHERE " + where + " ORDER BY NodeNumber",
          {"Given_ConfigID", "Given_PartID"}};
}

// A copy of the rows whose `key` column has the given value, into another configuration and partition.
std::string copy_sql(const DeviceTable& table, const Replacement& key, std::string_view into,
                     std::string_view comma) {
  return "INSERT INTO " + std::string(into) + " (" + joined(insert_list(table.columns), comma) + ") SELECT " +
         joined(select_list(table.columns,
                            {{"ConfigID", "Given_NewConfigID"}, {"PartID", "Given_NewPartID"}, key}),
                ", ") +
         " FROM " + std::string(table.name) + " WHERE " +
         condition({{"ConfigID", "Given_ConfigID"}, {"PartID", "Given_PartID"}, key});
}

Command duplicate(const DeviceTable& table) {
  Replacement key{"NodeNumber", "Given_NodeNumber"};
  if (table.kind == TableKind::kDetail) key = {"NodeMasterID", "Given_NodeMasterID"};
  if (table.kind == TableKind::kStyle) key = {"StyleID", "Given_StyleID"};
  const std::string sql = table.kind == TableKind::kStyle ? copy_sql(table, key, table.name, ",") + " "
                                                          : copy_sql(table, key, quoted(table.name), ", ");
  return {
      "Duplicate_" + std::string(table.name),
      sql,
      {"Given_NewConfigID", "Given_NewPartID", std::string(key.parameter), "Given_ConfigID", "Given_PartID"}};
}

Command duplicate_settings() {
  return {"Duplicate_QVRSettings",
          "INSERT INTO QVRSettings (" + joined(insert_list(kSettingsColumns), ", ") + ") SELECT " +
              joined(select_list(kSettingsColumns, {{"ConfigID", "GivenNew_ConfigID"}}), ", ") +
              " FROM QVRSettings WHERE " + condition({{"ConfigID", "Given_ConfigID"}}),
          {"GivenNew_ConfigID", "Given_ConfigID"}};
}

// Tables that are emptied by configuration alone, with the column that holds its identifier.
constexpr std::array<Replacement, 7> kDeletedByConfiguration{{
    {"DaylightSavingsMasterID", "Daylight_Mode_Date"},  // keyed by the configuration in spite of its name
    {"ConfigID", "Daylight_Savings"},
    {"Config_ID", "Node_Type_Max"},
    {"Config_ID", "Partition_Settings"},
    {"Config_ID", "Used_Cards"},
    {"Config_ID", "Used_Lines"},
    {"ConfigID", "QVRSettings"},
}};

Command delete_configuration(std::string_view table, std::string_view column) {
  const std::string name(table);
  return {"Delete_" + name,
          "DELETE FROM " + name + " WHERE " + condition({{column, "Given_ConfigID"}}) + " ",
          {"Given_ConfigID"}};
}

std::vector<Command> single_commands() {
  return {
      {"Get_QVRSetting", "SELECT * FROM QVRSettings WHERE ConfigID = `Given_ConfigID`", {"Given_ConfigID"}},
      {"Get_File_Handling",
       "SELECT * FROM File_Handling WHERE SiteID = `Given_SiteID` AND FileType = `Given_FileType`",
       {"Given_SiteID", "Given_FileType"}},
      {"Get_Used_Lines_RTQAConfig",
       "SELECT * FROM Used_Lines, RTQAConfig WHERE Used_Lines.Config_ID = `Given_ConfigID` AND "
       "Used_Lines.Config_ID = RTQAConfig.ConfigID",
       {"Given_ConfigID"}},
      {"Update_RTQA_Option",
       "UPDATE Used_Lines SET RTQA_Option = `Given_RTQA_Option` WHERE Config_ID = `Given_ConfigID` AND "
       "Base_Slot_No = `Given_Base_Slot_No` AND Slot_Offset = `Given_Slot_Offset` AND Line = `Given_Line` ",
       {"Given_RTQA_Option", "Given_ConfigID", "Given_Base_Slot_No", "Given_Slot_Offset", "Given_Line"}},
  };
}

std::vector<Command> make_rules_commands() {
  std::vector<Command> commands = single_commands();
  for (const Replacement& row : kDeletedByConfiguration)
    commands.push_back(delete_configuration(row.parameter, row.column));
  for (const DeviceTable& table : device_tables()) {
    if (table.uses & kDelete) commands.push_back(delete_partition(table));
    if (table.uses & kGet) commands.push_back(get_nodes(table));
    if (table.uses & kDuplicate) commands.push_back(duplicate(table));
  }
  commands.push_back(duplicate_settings());
  return commands;
}

bool is_word_character(char c) {
  return base::is_letter_or_digit(c) || c == '_';
}

// The length of the token at the start of `text`: a quoted text or name with both its quotes, a word, or one
// other character.
std::size_t token_length(std::string_view text) {
  const char first = text.front();
  if (first == '`' || first == '\'' || first == '"') {
    const auto end = text.find(first, 1);
    return end == std::string_view::npos ? text.size() : end + 1;
  }
  const auto end = std::find_if_not(text.begin(), text.end(), is_word_character);
  return std::max<std::size_t>(1, static_cast<std::size_t>(end - text.begin()));
}

std::string_view without_back_quotes(std::string_view token) {
  return token.size() > 2 && token.front() == '`' ? token.substr(1, token.size() - 2) : token;
}

}  // namespace

const std::vector<Command>& control_commands() {
  static const std::vector<Command> commands = {
      {"Get_AllSites", "SELECT Site.* FROM Site", {}},
      {"Get_AllPartitions",
       "SELECT Partition_Settings.* FROM Partition_Settings WHERE Config_ID = `Given_ConfigID` ORDER BY "
       "PartitionID",
       {"Given_ConfigID"}},
      {"Update_SessionQVR", "UPDATE SessionQVR SET SiteID = `Given_SiteID` ", {"Given_SiteID"}},
      {"Get_FirmwareVersion",
       "SELECT FirmwareVersion FROM Site WHERE SiteID = `Given_SiteID`",
       {"Given_SiteID"}},
  };
  return commands;
}

const std::vector<Command>& rules_commands() {
  static const std::vector<Command> commands = make_rules_commands();
  return commands;
}

std::string with_placeholders(const Command& command) {
  std::string result;
  for (std::string_view rest = command.sql; !rest.empty();) {
    const std::string_view token = rest.substr(0, token_length(rest));
    const std::string name(without_back_quotes(token));
    const bool is_parameter =
        std::find(command.parameters.begin(), command.parameters.end(), name) != command.parameters.end();
    result += is_parameter ? ":" + name : std::string(token);
    rest.remove_prefix(token.size());
  }
  return result;
}

}  // namespace qvrcom::environment
