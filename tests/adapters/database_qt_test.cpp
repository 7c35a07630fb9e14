#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include "adapters/database_qt.h"
#include "adapters/machine_files.h"
#include "adapters/temporary_suite.h"
#include "adapters/xml_rows_qt.h"
#include "base/fault.h"
#include "doubles/caught.h"
#include "environment/command_set.h"
#include "environment/schema.h"
#include "environment/statistics_tables.h"

namespace qvrcom::adapters {
namespace {

using base::Field;
using doubles::fault_of;
using testing::HasSubstr;

struct DatabaseTest : testing::Test, TemporarySuite {
  std::string opening() {
    return fault_of([&] { engine.open(folders.GetConnectionString()); });
  }
};

TEST_F(DatabaseTest, SetUpMakesAMachineReadyAndTwiceIsHarmless) {
  EXPECT_NE(environment::missing_set_up(machine, files), std::nullopt);
  EXPECT_FALSE(set_up().empty());
  EXPECT_EQ(environment::missing_set_up(machine, files), std::nullopt);
  EXPECT_TRUE(files.folder_exists(folders.GetSchedulerFolder()));
  EXPECT_TRUE(files.folder_exists(folders.GetAppDocsRoot()));
  struct stat status {};
  ASSERT_EQ(stat(database_path().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);

  EXPECT_EQ(value("SELECT COUNT(*) FROM Partition_Settings WHERE Config_ID = 1"), "64");
  EXPECT_EQ(value("SELECT Machine_Type_ID FROM QVRSettings WHERE ConfigID = 1"), "2");
  query("INSERT INTO Site (User_Defined_Site_Name) VALUES ('older')");
  const int writes = machine.writes;
  EXPECT_THAT(set_up(), testing::ElementsAre("Database: added statistics settings of 1 sites"));
  EXPECT_THAT(set_up(), testing::IsEmpty());
  EXPECT_EQ(machine.writes, writes);
  EXPECT_EQ(value("SELECT COUNT(*) FROM SessionQVR"), "1");
  EXPECT_EQ(value("SELECT AutoIncrements || '|' || (DefaultPathname IS NULL) FROM File_Handling"), "|1");

  std::filesystem::remove(database_path());
  const auto lack = [&] { return environment::missing_set_up(machine, files).value_or(environment::Lack{}); };
  EXPECT_THAT(lack().text, HasSubstr(database_path() + " is not there"));
  EXPECT_TRUE(lack().can_be_made);
  std::filesystem::create_symlink("none", database_path());
  EXPECT_THAT(lack().text, HasSubstr(database_path() + " cannot be used. It is a link"));
  EXPECT_FALSE(lack().can_be_made);
  const std::string scheduler = files.native(folders.GetSchedulerFolder());
  std::filesystem::remove_all(scheduler);
  std::ofstream(scheduler.substr(0, scheduler.size() - 1)) << "a file";
  EXPECT_THAT(lack().text, HasSubstr(" cannot be used. Something else has its name."));
}

// As when a fleet of desktops is started for the first time by one script.
TEST_F(DatabaseTest, SetUpsAtOnceTakeTheirTurns) {
  const std::string config = folder.path + "/config";
  std::vector<pid_t> children;
  const mode_t before = umask(0);
  for (int i = 0; i < 6; ++i) {
    children.push_back(fork());
    if (children.back() != 0) continue;
    MachineFiles real(config);
    const std::string root = suite_path(folder.path);
    const std::string fault = fault_of([&] {
      environment::SetUp(real, real, files, engine).run({root + "\\data", root + "\\docs", "\\opt"});
    });
    _exit(fault.empty() ? 0 : 1);
  }
  umask(before);
  for (const pid_t child : children) {
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  const MachineFiles real(config);
  EXPECT_EQ(environment::missing_set_up(real, files), std::nullopt);
  EXPECT_EQ(environment::FilesAndFolders(real, files).GetAppPath(), "\\opt\\");
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path)) {
    struct stat status {};
    ASSERT_EQ(lstat(entry.path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 022U, 0U) << entry.path() << " can be written by others";
  }

  std::ofstream(config + "/QVRCOM+.ini") << "nothing of the kind\n";
  EXPECT_THAT(doubles::whole_fault_of([&] { MachineFiles(config).set_setting("QVRCOM+", "A", "b", "c"); }),
              testing::HasSubstr("/QVRCOM+.ini\" is not a settings file"));
  EXPECT_EQ(fault_of([&] { MachineFiles(config).setting("QVRCOM+", "Jobs", "LogDays"); }), "Bad file format");
  std::filesystem::remove(config + "/machine.reg");
  std::filesystem::create_directory(config + "/machine.reg");
  EXPECT_EQ(fault_of([&] { MachineFiles{config}; }), "Path/File access error");
}

TEST_F(DatabaseTest, ACopiedRootLeadsToItselfAlone) {
  const std::string first = folder.path + "/first";
  const std::string copy = folder.path + "/copy";
  MachineFiles original(first + "/config", first);
  environment::SetUp(original, original, files, engine)
      .run({suite_path(first + "/data"), suite_path(first + "/docs"), "\\opt"});
  std::filesystem::copy(first, copy, std::filesystem::copy_options::recursive);
  const MachineFiles copied(copy + "/config", copy);
  EXPECT_EQ(environment::FilesAndFolders(copied, files).GetAppDataRoot(),
            suite_path(copy + "/data/Corbelin/QVRCOM+/"));
  EXPECT_EQ(environment::FilesAndFolders(copied, files).GetCommonDocumentsPath(), suite_path(copy + "/docs"));
  EXPECT_THAT(doubles::whole_fault_of([&] { MachineFiles(copy + "/config").special_folder(35); }),
              HasSubstr("QVRCOM_ROOT is not set"));

  MachineFiles absolute(first + "/absolute");
  absolute.hold();
  absolute.set_special_folder(35, suite_path(copy + "/data"));
  EXPECT_THAT(doubles::whole_fault_of([&] { MachineFiles(first + "/absolute", first).special_folder(35); }),
              HasSubstr(copy + "/data\", which does not lie below QVRCOM_ROOT"));
}

TEST_F(DatabaseTest, EveryCommandRunsOnTheSchema) {
  set_up();
  environment::DataBase control(connection);
  environment::DBase rules(connection);
  const auto run_all = [](environment::CommandSet& set, const std::vector<environment::Command>& commands) {
    for (const environment::Command& command : commands) {
      const std::vector<Field> arguments(command.parameters.size(), "1");
      EXPECT_EQ(fault_of([&] { set.run(command.name, arguments); }), "") << command.name;
    }
  };
  run_all(control, environment::control_commands());
  run_all(rules, environment::rules_commands());
}

TEST_F(DatabaseTest, CommandsDoWhatTheySay) {
  set_up();
  environment::DataBase control(connection);
  environment::DBase rules(connection);
  control.run("Update_SessionQVR", {"7"});
  EXPECT_EQ(value("SELECT SiteID FROM SessionQVR"), "7");
  EXPECT_EQ(control.run("Get_AllPartitions", {"1"})[9].text("PartitionID"), "10");
  EXPECT_TRUE(control.run("Get_AllPartitions", {"2"}).empty());

  query(
      "INSERT INTO Node_MSG (ConfigID, PartID, NodeNumber, Password, Comment) VALUES (1, 3, 12, 'p', NULL), "
      "(1, 3, 2, '', ''), (1, 3, 0, 'never', '')");
  const base::Rows nodes = rules.run("Get_Node_MSG", {"1", "3"});
  ASSERT_EQ(nodes.size(), 2U);
  EXPECT_EQ(nodes[0].text("NodeNumber"), "2");
  EXPECT_EQ(nodes[0]["Comment"], Field(""));
  EXPECT_EQ(nodes[1]["Comment"], Field());
  rules.run("Duplicate_Node_MSG", {"9", "4", "12", "1", "3"});
  EXPECT_EQ(value("SELECT Password FROM Node_MSG WHERE ConfigID = 9 AND PartID = 4 AND NodeNumber = 12"),
            "p");
  query("INSERT INTO Daylight_Mode_Date VALUES (1), (2)");
  rules.run("Delete_Daylight_Mode_Date", {"1"});
  EXPECT_EQ(value("SELECT COUNT(*) FROM Daylight_Mode_Date"), "1");
}

TEST_F(DatabaseTest, BindsValuesStrictly) {
  set_up();
  platform::Database& database = connection.database();
  const auto run = [&](const std::string& sql, std::vector<platform::NamedValue> values) {
    return fault_of([&] { database.run(sql, values); });
  };
  const std::string insert = "INSERT INTO Users (LoginName) VALUES (:Name)";
  EXPECT_EQ(run(insert, {}), "Wrong number of arguments");
  EXPECT_EQ(run(insert, {{"Name", "a"}, {"Other", "b"}}), "Wrong number of arguments");
  EXPECT_EQ(run("SELECT ':Name', \":b\" FROM Users", {{"Name", "a"}}), "Wrong number of arguments");
  EXPECT_EQ(run("SELECT * FROM Users WHERE LoginName = ?", {}), "Wrong number of arguments");
  EXPECT_EQ(run("SELECT * FROM Nothing", {}), "Database command failed");

  for (const Field& name : {Field(""), Field(), Field("'); DROP TABLE Users; --"), Field("caf\xC3\xA9;")}) {
    query("DELETE FROM Users");
    EXPECT_EQ(run(insert, {{"Name", name}}), "");
    EXPECT_EQ(query("SELECT LoginName FROM Users")[0]["LoginName"], name);
  }
}

TEST_F(DatabaseTest, SaysWhyAFileCannotBeOpened) {
  set_up();
  std::string good = files.read(suite_path(database_path()));

  std::filesystem::remove(database_path());
  EXPECT_EQ(opening(), "File not found");
  EXPECT_FALSE(std::filesystem::exists(database_path())) << "opening must not make a file";
  ASSERT_EQ(mkfifo(database_path().c_str(), 0600), 0);
  EXPECT_EQ(fault_of([&] { engine.create(folders.GetConnectionString()); }), "Path/File access error");
  std::filesystem::remove(database_path());

  const std::string damaged = good.substr(0, 100) + std::string(good.size() - 100, '\x5A');
  const std::pair<std::string, const char*> cases[] = {
      {std::string("\0\1\0\0Standard Jet DB", 19), "Database is foreign"},
      {"name,value\n", "Database is foreign"},
      {good.substr(0, 40), "Database is damaged"},
      {damaged, "Database is damaged"},
      {good, ""},
  };
  for (const auto& [bytes, wanted] : cases) {
    write_database_file(bytes);
    EXPECT_EQ(opening(), wanted) << bytes.size();
  }
  std::filesystem::rename(database_path(), database_path() + ".moved");
  std::filesystem::create_symlink("NewDB.mdb.moved", database_path());
  EXPECT_EQ(opening(), "Permission denied") << "a link is not followed";
  std::filesystem::rename(database_path() + ".moved", database_path());
  chmod(database_path().c_str(), 0);
  if (geteuid() != 0) {
    EXPECT_EQ(opening(), "Database cannot be opened");
  }
}

TEST_F(DatabaseTest, TellsALockedFile) {
  set_up();
  QtDatabaseEngine other_engine(files);
  const auto other = other_engine.open(folders.GetConnectionString());
  other->run("BEGIN EXCLUSIVE");
  EXPECT_EQ(opening(), "Database is locked");
  other->run("COMMIT");
  EXPECT_EQ(opening(), "");
}

TEST_F(DatabaseTest, ACopyPutBackIsWhatTheNextActionWorksWith) {
  set_up();
  environment::DBase rules(connection);
  const std::string copy = database_path() + ".copy";
  const auto put_back = [&] { std::filesystem::rename(copy, database_path()); };
  std::filesystem::copy_file(database_path(), copy);
  query("DELETE FROM Partition_Settings");
  put_back();
  EXPECT_EQ(value("SELECT COUNT(*) FROM Partition_Settings"), "64");

  std::filesystem::copy_file(database_path(), copy);
  rules.run("Delete_Used_Lines", {"1"});
  put_back();
  rules.run("Delete_Used_Lines", {"1"});
  query("DELETE FROM Partition_Settings");
  EXPECT_EQ(value("SELECT COUNT(*) FROM Partition_Settings"), "0");
}

TEST_F(DatabaseTest, RefusesTablesOfOthersAndNewerSchemas) {
  set_up();
  const auto database = engine.open(folders.GetConnectionString());
  database->run("PRAGMA user_version = 9");
  EXPECT_EQ(fault_of([&] { set_up(); }), "Database is too new");
  database->run("PRAGMA application_id = 7");
  EXPECT_EQ(fault_of([&] { set_up(); }), "Database is foreign");

  write_database_file("");
  EXPECT_THAT(set_up(), testing::Contains(HasSubstr("schema version 0 to 2")));
}

// A machine whose database is one of schema version 1 with rows in it: the dump of a file that programs of
// that version made.
struct SchemaMigrationTest : testing::Test, TemporarySuite {
  SchemaMigrationTest() {
    set_up();
    std::filesystem::remove(database_path());
    const auto database = engine.create(folders.GetConnectionString());
    std::ifstream dump(QVRCOM_SCHEMA_SAMPLES "/schema_version_1.sql");
    for (std::string statement; std::getline(dump, statement);)
      database->run(statement);
  }
};

TEST_F(SchemaMigrationTest, ProgramsRefuseTheOldSchemaAndSetUpKeepsEveryRow) {
  EXPECT_THAT(doubles::whole_fault_of([&] { query("SELECT 1"); }),
              testing::AllOf(testing::StartsWith("Database is too old: "), HasSubstr("\"qvrcomctl setup\"")));
  EXPECT_THAT(set_up(), testing::ElementsAre(HasSubstr("schema version 1 to 2")));
  EXPECT_EQ(value("SELECT User_Defined_Site_Name || AccessCode FROM Site"), "Old_Office1234");
  EXPECT_EQ(value("SELECT QVRFilename FROM Node_MSG WHERE PartID = 3 AND NodeNumber = 7"), "greeting.wav");
  EXPECT_EQ(value("SELECT Name FROM Partition_Settings WHERE PartitionID = 3"), "Front desk");
  EXPECT_EQ(value("SELECT SiteID FROM SessionQVR"), "1");
  EXPECT_EQ(value("SELECT COUNT(*) FROM Partition_Settings"), "64");
  for (const environment::StatisticsTable& table : environment::statistics_tables()) {
    const base::Rows rows = query("SELECT * FROM " + std::string(table.name));
    ASSERT_EQ(rows.size(), 1U) << table.name;
    EXPECT_EQ(rows[0].text("ConfigID") + rows[0].text("PartitionID"), "13");
    EXPECT_EQ(rows[0]["SiteID"], std::nullopt);
  }
}

TEST_F(SchemaMigrationTest, OldAndNewDatabasesHaveTheSameColumns) {
  set_up();
  const auto columns = [](platform::Database& database) {
    std::vector<std::string> all;
    for (const environment::StatisticsTable& table : environment::statistics_tables()) {
      for (const base::Row row : database.run("PRAGMA table_info(" + std::string(table.name) + ")"))
        all.push_back(std::string(table.name) + "." + row.text("name") + " " + row.text("type"));
    }
    return all;
  };
  TemporarySuite fresh;
  fresh.set_up();
  EXPECT_EQ(columns(connection.database()), columns(fresh.connection.database()));
}

TEST_F(SchemaMigrationTest, AFailedStepLeavesTheOldSchema) {
  const auto database = engine.open(folders.GetConnectionString());
  // The step stumbles over a column that is there already.
  database->run("ALTER TABLE Stats_Detail_VOX ADD COLUMN LaterTries INTEGER");
  EXPECT_THROW(environment::migrate(*database), base::Fault);
  EXPECT_EQ(environment::schema_version(*database), 1);
  EXPECT_EQ(database->run("SELECT * FROM Stats_Line_Call_Counts").columns().size(), 2U);
}

const std::string kSpaces =
    "xmlns:s='uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882' xmlns:rs='urn:schemas-microsoft-com:rowset' "
    "xmlns:z='#RowsetSchema'";

std::string document(const std::string& columns, const std::string& rows) {
  return "<xml " + kSpaces + "><s:Schema id='RowsetSchema'><s:ElementType name='row'>" + columns +
         "</s:ElementType></s:Schema><rs:data>" + rows + "</rs:data></xml>";
}

TEST(QtXmlRows, ReadsColumnsRowsAndNulls) {
  const base::Rows rows = QtXmlRows().load(
      document("<s:AttributeType name='ID'/><s:AttributeType name='c1' rs:name='Login Name'/>",
               "<z:row ID='1' c1='&lt;a&amp;b&#10;&gt;'/><rs:insert><z:row ID=''/></rs:insert>"));
  EXPECT_EQ(rows.columns(), (std::vector<std::string>{"ID", "Login Name"}));
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0]["Login Name"], base::Field("<a&b\n>"));
  EXPECT_EQ(rows[1]["ID"], base::Field(""));
  EXPECT_EQ(rows[1]["Login Name"], base::Field());
  EXPECT_TRUE(QtXmlRows().load(document("<s:AttributeType name='ID'/>", "")).empty());
}

TEST(QtXmlRows, RefusesWhatIsNoTable) {
  const std::string column = "<s:AttributeType name='a'/>";
  const std::string whole = document(column, "<z:row a='1'/>");
  const std::string cases[] = {
      "",
      "OK",
      "<xml/>",
      whole.substr(0, whole.size() - 8),
      document("", ""),
      document(column + column, ""),
      document("<s:AttributeType/>", ""),
      document(column, "<z:row b='1'/>"),
      document(column, "<z:row a='1' a='2'/>"),
      "<!DOCTYPE xml [<!ENTITY e 'x'>]>" + document(column, "<z:row a='&e;'/>"),
      "<xml " + kSpaces + "><z:row a='1'/></xml>",
  };
  for (const std::string& text : cases)
    EXPECT_THROW(QtXmlRows().load(text), base::Fault) << text;
}

}  // namespace
}  // namespace qvrcom::adapters
