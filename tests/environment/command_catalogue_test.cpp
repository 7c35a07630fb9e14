#include "environment/command_catalogue.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

#include "doubles/caught.h"
#include "doubles/memory_data.h"
#include "environment/command_set.h"
#include "environment/schema.h"

namespace qvrcom::environment {
namespace {

// tests/environment/samples holds what the tables have to come to: databases of users have these columns, and
// hosts know the commands by these texts.
std::string stored(const char* name) {
  std::ifstream file(std::string(QVRCOM_SAMPLES "/") + name);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(CommandCatalogue, IsTheStoredOne) {
  std::string text;
  for (const auto* commands : {&control_commands(), &rules_commands()}) {
    for (const Command& one : *commands) {
      text += one.name + ": " + one.sql + "\n";
      for (const std::string& parameter : one.parameters)
        text += "  " + parameter + "\n";
    }
  }
  EXPECT_EQ(text, stored("commands.txt"));
}

TEST(Schema, IsTheStoredOne) {
  doubles::MemoryDatabase engine;
  engine.version = engine.application = "0";
  engine.answer("sqlite_master", {"COUNT(*)"}, {{"0"}});
  migrate(*engine.open({}));
  std::string text;
  for (const auto& statement : engine.statements)
    text += statement.sql + "\n";
  EXPECT_EQ(text, stored("schema.sql"));
}

TEST(CommandCatalogue, OnlyWordsOfItsListAreParameters) {
  const Command odd{
      "Odd",
      "SELECT `Password`, 'Given_A', \"Given_A\", Given_AB FROM T WHERE a=`Given_A` OR b=(Given_A)",
      {"Given_A"}};
  EXPECT_EQ(with_placeholders(odd),
            "SELECT `Password`, 'Given_A', \"Given_A\", Given_AB FROM T WHERE a=:Given_A OR b=(:Given_A)");
}

TEST(CommandSet, OpensForEachActionAndTakesOneArgumentPerParameter) {
  doubles::MemoryData data;
  DataBase commands(data.connection);
  EXPECT_EQ(data.engine.opened, 0);

  commands.run("Update_SessionQVR", {"7"});
  commands.run("Get_AllSites");
  EXPECT_EQ(data.engine.opened, 2);
  ASSERT_EQ(data.engine.statements.size(), 2U);
  EXPECT_EQ(data.engine.statements[0].sql, "UPDATE SessionQVR SET SiteID = :Given_SiteID ");
  EXPECT_EQ(data.engine.statements[0].values[0].value, "7");

  EXPECT_THROW(commands.run("Update_SessionQVR"), base::Fault);
  EXPECT_THROW(commands.run("Get_AllSites", {"1"}), base::Fault);
  EXPECT_THROW(commands.run("Get_Node_MSG", {"1", "1"}), base::Fault) << "belongs to the other set";

  const int opened = data.engine.opened;
  data.connection.database().transaction([&] {
    commands.run("Get_AllSites");
    data.dbase.run("Get_Node_MSG", {"1", "1"});
  });
  EXPECT_EQ(data.engine.opened, opened + 1) << "both sets are part of the transaction";
}

TEST(CommandSet, RefusesADatabaseOfAnotherSchema) {
  const std::pair<int, const char*> cases[] = {{0, "Database is not set up"},
                                               {kSchemaVersion - 1, "Database is too old"},
                                               {kSchemaVersion + 1, "Database is too new"}};
  for (const auto& [version, description] : cases) {
    doubles::MemoryData data;
    data.engine.version = std::to_string(version);
    DataBase commands(data.connection);
    EXPECT_EQ(doubles::fault_of([&] { commands.run("Get_AllSites"); }), description);
    data.engine.version = std::to_string(kSchemaVersion);
    commands.run("Get_AllSites");
  }
}

}  // namespace
}  // namespace qvrcom::environment
