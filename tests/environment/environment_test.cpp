#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

#include "doubles/caught.h"
#include "doubles/memory_data.h"
#include "doubles/memory_files.h"
#include "doubles/memory_machine.h"
#include "environment/command_catalogue.h"
#include "environment/command_set.h"
#include "environment/files_and_folders.h"
#include "environment/names.h"
#include "environment/schema.h"

namespace qvrcom::environment {
namespace {

using platform::RegistryRoot;
using std::string_literals::operator""s;

struct FilesAndFoldersTest : testing::Test {
  void registry_text(const char* name, const std::string& text) {
    machine.registry_keys.insert(kShellFoldersKey);
    machine.registry_values[{kShellFoldersKey, name}] = {1, text + '\0'};
  }

  doubles::MemoryMachine machine;
  doubles::MemoryFiles files;
  FilesAndFolders folders{machine, files};
};

TEST_F(FilesAndFoldersTest, ComposesEveryFolderBelowItsRoot) {
  machine.special_folders = {{35, "C:\\Data"}, {46, "C:\\Docs"}};
  files.make_folders("C:\\Data\\Corbelin\\QVRCOM+");
  files.make_folders("C:\\Docs\\Corbelin\\QVRCOM+");
  const std::pair<std::string, std::string> cases[] = {
      {folders.GetAppDataRoot(), "C:\\Data\\Corbelin\\QVRCOM+\\"},
      {folders.GetAppDocsRoot(), "C:\\Docs\\Corbelin\\QVRCOM+\\"},
      {folders.GetMsgsFolder("X"), "C:\\Docs\\Corbelin\\QVRCOM+\\X\\Msgs\\"},
      {folders.GetStatsFolder("Site1"), "C:\\Docs\\Corbelin\\QVRCOM+\\Site1\\Stats\\"},
      {folders.GetSAMELogsFolder(), "C:\\Docs\\Corbelin\\QVRCOM+\\SAMELogs\\"},
      {folders.GetSchedulerFolder(), "C:\\Data\\Corbelin\\QVRCOM+\\Scheduler\\"},
      {folders.GetConnectionString(),
       "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=C:\\Data\\Corbelin\\"
       "QVRCOM+\\Database\\NewDB.mdb"},
  };
  for (const auto& [found, wanted] : cases)
    EXPECT_EQ(found, wanted);

  base::RunValues run;
  EXPECT_EQ(scheduler_folder(run, folders), "C:\\Data\\Corbelin\\QVRCOM+\\Scheduler\\");
  run.SchedulerFolder = "D:\\Elsewhere\\";
  EXPECT_EQ(scheduler_folder(run, folders), "D:\\Elsewhere\\");
}

TEST_F(FilesAndFoldersTest, FallsBackToTheRegistryUnchecked) {
  machine.special_folders = {{35, "C:\\Data"}};
  registry_text(kCommonAppDataValue, "E:\\Nowhere");
  EXPECT_EQ(folders.GetAppDataRoot(), "E:\\Nowhere\\Corbelin\\QVRCOM+\\");
  EXPECT_EQ(doubles::fault_of([&] { folders.GetAppDocsRoot(); }), "Unsupported value type");
  machine.registry_keys.clear();
  EXPECT_EQ(folders.GetAppDocsRoot(), "\\Corbelin\\QVRCOM+\\");
}

TEST_F(FilesAndFoldersTest, ReadsRegistryValuesByType) {
  machine.registry_keys = {"Key"};
  const std::vector<std::byte> bytes{std::byte{0}, std::byte{255}};
  const std::vector<std::tuple<std::uint32_t, std::string, RegistryValue>> cases = {
      {1, "text\0"s, "text"s}, {2, "%A%\0"s, "%A%"s},        {1, "", ""s},
      {3, "\x00\xFF"s, bytes}, {4, "\xFE\xFF\xFF\xFF"s, -2}, {7, "one\0two\0\0"s, "one\0two"s},
      {1, "a\0b\0"s, "a\0b"s},
  };
  for (const auto& [type, raw, wanted] : cases) {
    machine.registry_values[{"Key", "Name"}] = {type, raw};
    EXPECT_EQ(folders.GetRegistryValue(RegistryRoot::kLocalMachine, "Key", "Name"), wanted) << type;
  }
  EXPECT_EQ(folders.GetRegistryValue(RegistryRoot::kLocalMachine, "No key", "Name", 7), RegistryValue{7});
  machine.registry_values[{"Key", "Name"}] = {11, "12345678"};
  EXPECT_THROW(folders.GetRegistryValue(RegistryRoot::kLocalMachine, "Key", "Name", 7), base::Fault);
  EXPECT_THROW(folders.GetRegistryValue(RegistryRoot::kLocalMachine, "Key", "Absent", 7), base::Fault);
}

TEST_F(FilesAndFoldersTest, ApplicationFolderEndsInOneBackslash) {
  EXPECT_EQ(folders.GetAppPath(), "\\opt\\qvrcom\\");
  machine.settings[{"QVRCOM+", "Application", "AppPath"}] = "C:\\App\\";
  EXPECT_EQ(folders.GetAppPath(), "C:\\App\\");
}

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
