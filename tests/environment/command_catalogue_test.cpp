#include "environment/command_catalogue.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "doubles/caught.h"
#include "doubles/memory_database.h"
#include "doubles/memory_files.h"
#include "doubles/memory_machine.h"
#include "environment/command_set.h"
#include "environment/schema.h"

namespace qvrcom::environment {
namespace {

const Command& command(const std::string& name) {
  const auto& all = rules_commands();
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const Command& one) { return one.name == name; });
  if (found == all.end()) throw base::Fault("no command " + name);
  return *found;
}

TEST(CommandCatalogue, HoldsBothSets) {
  EXPECT_EQ(control_commands().size(), 4U);
  std::set<std::string> names;
  for (const Command& one : rules_commands())
    names.insert(one.name);
  EXPECT_EQ(names.size(), 112U);
  EXPECT_EQ(rules_commands().size(), 112U);
}

TEST(CommandCatalogue, WritesTheSqlToTheBlank) {
  const std::pair<const char*, const char*> cases[] = {
      {"Delete_Stats_Line_Call_Counts",
       "DELETE FROM Stats_Line_Call_Counts WHERE ConfigID = `Given_ConfigID` AND PartitionID = "
       "`Given_PartitionID`"},
      {"Delete_Node_General_Pool",
       "DELETE FROM Node_General_Pool WHERE ConfigID = `Given_ConfigID` AND PartID = `Given_PartitionID`"},
      {"Delete_Used_Lines", "DELETE FROM Used_Lines WHERE Config_ID = `Given_ConfigID` "},
      {"Delete_Daylight_Mode_Date",
       "DELETE FROM Daylight_Mode_Date WHERE DaylightSavingsMasterID = `Given_ConfigID` "},
      {"Get_Node_MSG",
       "SELECT * FROM Node_MSG WHERE ConfigID = `Given_ConfigID` AND PartID = `Given_PartID` AND NodeNumber "
       "> "
       "0 ORDER BY NodeNumber"},
      {"Get_Node_DBN",
       "SELECT * FROM Node_DBN WHERE (ConfigID = Given_ConfigID) AND (PartID = Given_PartID) AND (NodeNumber "
       "> 0) ORDER BY NodeNumber"},
      {"Duplicate_Node_MSG",
       "INSERT INTO `Node_MSG` (ConfigID, PartID, NodeTypeID, NodeNumber, MaxLength, OnOff, DTMF, "
       "`Password`, "
       "Directory, QVRFilename, Comment, SkipCount, Permission, WarningTone, LineAssignment, NodeType, "
       "NodeDescription, MSGArchive) SELECT Given_NewConfigID, Given_NewPartID, NodeTypeID, "
       "Given_NodeNumber, "
       "MaxLength, OnOff, DTMF, `Password`, Directory, QVRFilename, Comment, SkipCount, Permission, "
       "WarningTone, LineAssignment, NodeType, NodeDescription, MSGArchive FROM Node_MSG WHERE ConfigID = "
       "`Given_ConfigID` AND PartID = `Given_PartID` AND NodeNumber = `Given_NodeNumber`"},
      {"Duplicate_STYLE_Blind",
       "INSERT INTO STYLE_Blind (ConfigID,PartID,StyleID,SuperviseID) SELECT Given_NewConfigID, "
       "Given_NewPartID, Given_StyleID, SuperviseID FROM STYLE_Blind WHERE ConfigID = `Given_ConfigID` AND "
       "PartID = `Given_PartID` AND StyleID = `Given_StyleID` "},
  };
  for (const auto& [name, sql] : cases)
    EXPECT_EQ(command(name).sql, sql) << name;
  EXPECT_EQ(command("Duplicate_Detail_DIR").parameters,
            (std::vector<std::string>{"Given_NewConfigID", "Given_NewPartID", "Given_NodeMasterID",
                                      "Given_ConfigID", "Given_PartID"}));
  EXPECT_EQ(command("Duplicate_QVRSettings").parameters[0], "GivenNew_ConfigID");
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
  doubles::MemoryMachine machine;
  doubles::MemoryFiles files;
  doubles::MemoryDatabase engine;
  FilesAndFolders folders(machine, files);
  DatabaseConnection connection(engine, folders);
  DataBase commands(connection);
  EXPECT_EQ(engine.opened, 0);

  commands.run("Update_SessionQVR", {"7"});
  commands.run("Get_AllSites");
  EXPECT_EQ(engine.opened, 2);
  ASSERT_EQ(engine.statements.size(), 2U);
  EXPECT_EQ(engine.statements[0].sql, "UPDATE SessionQVR SET SiteID = :Given_SiteID ");
  EXPECT_EQ(engine.statements[0].values[0].value, "7");

  EXPECT_THROW(commands.run("Update_SessionQVR"), base::Fault);
  EXPECT_THROW(commands.run("Get_AllSites", {"1"}), base::Fault);
  EXPECT_THROW(commands.run("Get_Node_MSG", {"1", "1"}), base::Fault) << "belongs to the other set";
  EXPECT_EQ(engine.statements.size(), 2U);

  const int opened = engine.opened;
  connection.database().transaction([&] {
    commands.run("Get_AllSites");
    DBase(connection).run("Get_Node_MSG", {"1", "1"});
  });
  EXPECT_EQ(engine.opened, opened + 1) << "both sets are part of the transaction";
}

TEST(CommandSet, RefusesADatabaseOfAnotherSchema) {
  doubles::MemoryMachine machine;
  doubles::MemoryFiles files;
  FilesAndFolders folders(machine, files);
  const std::pair<int, const char*> cases[] = {{0, "Database is not set up"},
                                               {kSchemaVersion - 1, "Database is too old"},
                                               {kSchemaVersion + 1, "Database is too new"}};
  for (const auto& [version, description] : cases) {
    doubles::MemoryDatabase engine;
    engine.version = std::to_string(version);
    DatabaseConnection connection(engine, folders);
    DataBase commands(connection);
    EXPECT_EQ(doubles::fault_of([&] { commands.run("Get_AllSites"); }), description);
    engine.version = std::to_string(kSchemaVersion);
    commands.run("Get_AllSites");
  }
}

}  // namespace
}  // namespace qvrcom::environment
