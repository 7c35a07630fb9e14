#include "components/database_components.h"

#include <map>
#include <vector>

#include "components/component_registry.h"
#include "components/rows_xml.h"

namespace qvrcom::components {
namespace {

using environment::DatabaseConnection;

// A question that is one SQL statement; its parameters take the arguments in their order.
struct Question {
  const char* component;
  const char* operation;
  std::vector<std::string> parameters;
  const char* sql;
};

const std::vector<Question>& questions() {
  static const std::vector<Question> all = {
      {"QVRdb.SITE", "Get_Site_Rows", {"SiteID"}, "SELECT * FROM Site WHERE SiteID = :SiteID"},
      {"QVRdb.Use", "Get_Current_User_Rows", {}, "SELECT * FROM Users WHERE \"Current\" = 1"},
      {"QVRdb.Config", "Get_Current_Config_Rows", {}, "SELECT * FROM Configurations WHERE \"Current\" = 1"},
      {"QVRdb.Config",
       "Get_Partition_Rows",
       {"ConfigID", "PartitionID"},
       "SELECT * FROM Partition_Settings WHERE Config_ID = :ConfigID AND PartitionID = :PartitionID"},
      {"QVRdb.Nodes",
       "Get_MSG_Nodes",
       {"ConfigID", "PartID"},
       "SELECT * FROM Node_MSG WHERE ConfigID = :ConfigID AND PartID = :PartID AND NodeNumber > 0 ORDER BY "
       "NodeNumber"},
  };
  return all;
}

base::Rows run(DatabaseConnection& connection, const char* sql, const std::vector<std::string>& parameters,
               std::span<const std::string> arguments) {
  std::vector<platform::NamedValue> values;
  for (std::size_t i = 0; i < parameters.size(); ++i)
    values.push_back({parameters[i], arguments[i]});
  return connection.database().run(sql, values);
}

Operation as_operation(const Question& question, DatabaseConnection& connection) {
  return {question.operation, question.parameters.size(),
          [&question, &connection](std::span<const std::string> arguments) -> std::optional<std::string> {
            return rows_xml(run(connection, question.sql, question.parameters, arguments));
          }};
}

Operation update_site(DatabaseConnection& connection) {
  return {"Update_SiteID", 1,
          [&connection](std::span<const std::string> arguments) -> std::optional<std::string> {
            run(connection, "UPDATE SessionQVR SET SiteID = :SiteID", {"SiteID"}, arguments);
            return "OK";
          }};
}

}  // namespace

void add_database_components(ComponentRegistry& registry, DatabaseConnection& connection) {
  std::map<std::string, std::vector<Operation>> components;
  for (const Question& question : questions())
    components[question.component].push_back(as_operation(question, connection));
  components["QVRud.udconfig"].push_back(update_site(connection));

  for (const auto& entry : components) {
    registry.add(entry.first,
                 [entry] { return std::make_unique<TableComponent>(entry.first, entry.second); });
  }
}

}  // namespace qvrcom::components
