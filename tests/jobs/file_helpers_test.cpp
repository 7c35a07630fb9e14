#include "jobs/file_helpers.h"

#include <gmock/gmock.h>

#include "jobs/job_parts.h"

namespace qvrcom::jobs {
namespace {

TEST(FileHelpers, GivesNumbersTheirWidth) {
  const struct {
    const char *number, *message, *partition;
  } rows[] = {{"0", "000", "00"},     {"7", "007", "07"},   {"9", "009", "09"},
              {" 10 ", "010", "10"},  {"99", "099", "99"},  {"100", "100", "00"},
              {"1234", "1234", "34"}, {"-5", "00-5", "05"}, {"2.5", "002", "02"}};
  JobParts parts;
  for (const auto& row : rows) {
    EXPECT_EQ(parts.helpers.ProperMsgNo(row.number), row.message) << row.number;
    EXPECT_EQ(parts.helpers.ProperPartID(row.number), row.partition) << row.number;
  }
}

TEST(FileHelpers, MakesFilesAndFoldersThatAreMissing) {
  JobParts parts;
  parts.file("there.sch") = "line\r\n";
  parts.helpers.Create_File("there.sch");
  parts.helpers.Create_File("new.sch");
  EXPECT_EQ(parts.file("there.sch"), "line\r\n");
  EXPECT_TRUE(parts.files.file_exists("S:\\new.sch"));
  EXPECT_EQ(parts.ui.pumps, 2);
  EXPECT_TRUE(parts.helpers.ExistedFolder("C:\\Data\\", "Corbelin"));
  EXPECT_FALSE(parts.helpers.ExistedFolder("S:\\", "there.sch"));

  parts.files.make_folders("C:\\Docs\\Corbelin\\QVRCOM+\\Stats");
  parts.helpers.Create_Folders();
  for (const char* name : {"Msgs", "Stats", "SAMELogs"})
    EXPECT_TRUE(parts.files.folder_exists("C:\\Docs\\Corbelin\\QVRCOM+\\" + std::string(name)));
  EXPECT_TRUE(parts.ui.messages.empty());
}

}  // namespace
}  // namespace qvrcom::jobs
