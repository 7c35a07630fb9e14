#include <gmock/gmock.h>

#include "adapters/temporary_suite.h"
#include "doubles/caught.h"
#include "environment/command_set.h"
#include "environment/schema.h"
#include "environment/statistics_tables.h"

namespace qvrcom::adapters {
namespace {

using testing::HasSubstr;

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

TEST_F(SchemaMigrationTest, ProgramsRefuseTheOldSchemaAndSetUpBringsItUpToDate) {
  EXPECT_THAT(doubles::whole_fault_of([&] { query("SELECT 1"); }),
              testing::AllOf(testing::StartsWith("Database is too old: "), HasSubstr("\"qvrcomctl setup\"")));
  EXPECT_THAT(set_up(), testing::ElementsAre(HasSubstr("schema version 1 to 2")));
  EXPECT_THAT(set_up(), testing::IsEmpty());
}

TEST_F(SchemaMigrationTest, EveryRowStays) {
  set_up();
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
  const auto found = columns(connection.database());
  EXPECT_EQ(found, columns(fresh.connection.database()));
  EXPECT_THAT(found, testing::Contains("Stats_Detail_VOX.LeadsToNodeType TEXT"));
  EXPECT_THAT(found, testing::Contains("Stats_Line_XFER_Counts.Transfers INTEGER"));
}

TEST_F(SchemaMigrationTest, AFailedStepLeavesTheOldSchema) {
  const auto database = engine.open(folders.GetConnectionString());
  // The step stumbles over a column that is there already.
  database->run("ALTER TABLE Stats_Detail_VOX ADD COLUMN LaterTries INTEGER");
  EXPECT_THROW(environment::migrate(*database), base::Fault);
  EXPECT_EQ(environment::schema_version(*database), 1);
  EXPECT_EQ(database->run("SELECT * FROM Stats_Line_Call_Counts").columns().size(), 2U);
}

}  // namespace
}  // namespace qvrcom::adapters
