#include "jobs/job_index.h"

#include <gmock/gmock.h>

#include <random>

#include "jobs/job_parts.h"
#include "jobs/naive_index.h"

namespace qvrcom::jobs {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kLine =
    "46341.5070023148;15/11/2026 12:10:05^Retrieve Statistics for Partition 3^Main ^A1^46341.25^2^Days^17^;"
    "S:\\Nov1526121005000\\Nov1526121005000.scr;";

TEST(JobIndex, WritesTheLineOfAJobAndSorts) {
  JobParts parts;
  parts.file("index.sch") = "5;later\r\n\r\n40;earlier\r\n";
  parts.writer.Create_Dir();
  parts.index.Write_Index("Main ", "A1", "Retrieve Statistics for Partition 3", "46341.25", "2", "Days");
  EXPECT_EQ(parts.session.job.JobId, kLine);
  EXPECT_EQ(parts.file("index.sch"), "40;earlier\r\n" + std::string(kLine) + "\r\n5;later\r\n");

  parts.session.job.NewJob = false;
  parts.session.job.RescheduleValue = 46400.5;
  parts.clock.time += std::chrono::hours(1);
  parts.index.Write_Index("", "", "", "", "", "");
  EXPECT_EQ(parts.file("reschedule.sch"),
            "46400.5;15/11/2026 12:10:05^^^^^^^17^;S:\\Nov1526121005000\\Nov1526121005000.scr;\r\n");
  EXPECT_THAT(parts.ui.messages, IsEmpty());
}

TEST(JobIndex, SortsByBytes) {
  const struct {
    const char *before, *after;
  } rows[] = {{"", "\r\n"},
              {"one", "one\r\n"},
              {"46341.51;\r\n46341.5;\r\n46341.4999;\r\n", "46341.4999;\r\n46341.51;\r\n46341.5;\r\n"},
              {"b\na\r\n\r\nB\n\xC3\xA4\nb", "B\r\na\r\nb\r\nb\r\n\xC3\xA4\r\n"},
              {" b \n a \n", "a \r\n b\r\n"},
              {"a\n \n", "\r\na\r\n"}};
  for (const auto& row : rows) {
    JobParts parts;
    parts.file("index.sch") = row.before;
    parts.index.Sort_File("index.sch");
    EXPECT_EQ(parts.file("index.sch"), row.after);
  }
}

TEST(JobIndex, RemovesLinesWhateverTheirCase) {
  JobParts parts;
  parts.file("index.sch") = "c\r\nC\r\nb\r\n";
  parts.file("reschedule.sch") = "z\r\n\r\nC\r\ny\r\n";
  parts.index.Remove_Index_Line("reschedule.sch", "c");
  EXPECT_EQ(parts.file("reschedule.sch"), "z\r\ny\r\n\r\n");  // not sorted
  EXPECT_EQ(parts.file("index.sch"), "C\r\nb\r\nc\r\n");      // sorted, whole
  parts.index.Remove_Index_Line("index.sch", "c");
  EXPECT_EQ(parts.file("index.sch"), "b\r\n");
  parts.index.Remove_Index_Line("index.sch", "B");
  EXPECT_EQ(parts.file("index.sch"), "\r\n");
  EXPECT_THROW(parts.index.Remove_Index_Line("none.sch", "x"), base::Fault);
}

TEST(JobIndex, DoesInOnePassWhatTheSlowWayDoes) {
  std::mt19937 random(7);
  for (int round = 0; round < 3000; ++round) {
    NaiveIndex naive;
    naive.job_folders = {"A", "3"};
    JobParts parts;
    parts.files.folders.insert({"S:\\A", "S:\\3"});
    parts.file("index.sch") = naive.files["index.sch"] = random_index(random);
    if (round % 2 == 0) {
      naive.validate();
      parts.index.Validate_Index_File();
    } else {
      std::vector<std::string> lines;
      const std::string removed = random_index(random);
      for (const std::string_view line : base::lines_of(removed))
        naive.remove("index.sch", lines.emplace_back(line));
      parts.index.remove_index_lines(lines);
    }
    ASSERT_EQ(parts.file("index.sch"), naive.files["index.sch"]) << round;
  }
}

TEST(JobIndex, ValidationWritesOnceOrNotAtAll) {
  JobParts parts;
  parts.files.folders.insert("S:\\A");
  const std::string kept = "b;^;S:\\A\\A.scr;\r\n\r\na;^;S:\\A\\A.scr;\r\n";
  parts.file("index.sch") = kept;
  parts.index.Validate_Index_File();
  EXPECT_EQ(parts.file("index.sch"), kept);  // nothing to remove: not even sorted
  EXPECT_EQ(parts.files.replaced, 0);
  parts.file("index.sch") = kept + "c;gone;with;blanks^;S:\\B\\B.scr;\r\nd\r\n";
  parts.index.Validate_Index_File();
  EXPECT_EQ(parts.file("index.sch"), "a;^;S:\\A\\A.scr;\r\nb;^;S:\\A\\A.scr;\r\n");
  EXPECT_EQ(parts.files.replaced, 1);
}

TEST(JobIndex, FindsTheFolderOfALine) {
  const struct {
    const char *line, *folder;
  } rows[] = {{kLine, "Nov1526121005000"},
              {"", ""},
              {"a;b", "a;b"},
              {"a;b;c;", "c"},
              {"a;b;c\\d", "c"},
              {"a;b;\\d;", ""},
              {"a;x;y;S:\\N\\N.scr;", "y"}};
  for (const auto& row : rows)
    EXPECT_EQ(JobIndex::Get_Folder(row.line), row.folder) << row.line;
}

TEST(JobIndex, ReadsAndAppendsLines) {
  JobParts parts;
  std::vector<std::string> lines;
  bool found = false;
  parts.file("list") = "\r\n";
  parts.index.Read_Lines("list", lines, found);
  EXPECT_FALSE(found);
  parts.index.Append_Line("list", "b");
  parts.index.Append_Line("list", "a");
  parts.index.Read_Lines("list", lines, found);
  EXPECT_TRUE(found);
  EXPECT_THAT(lines, ElementsAre("b", "a"));
  EXPECT_THROW(parts.index.Read_Lines("none", lines, found), base::Fault);
}

TEST(JobIndex, ReportsUnderTheOperationsName) {
  JobParts parts;
  parts.index.Validate_Index_File();
  parts.files.before = failing("append", base::kDiskFull);
  parts.index.Write_Index("", "", "", "", "", "");
  parts.files.before = failing("replace", base::kDiskFull);
  parts.file("index.sch") = "b\r\na\r\n";
  parts.index.Sort_File("index.sch");
  EXPECT_THAT(parts.ui.texts(), ElementsAre("Error_Handler: Validate_Index_File\r\nFile not found",
                                            "Error_Handler: Write_Index\r\nDisk full",
                                            "Error_Handler: ReWrite_File\r\nDisk full"));
  EXPECT_EQ(parts.ui.messages[0].title, "QVRCOM+");
  EXPECT_EQ(parts.file("index.sch"), "b\r\na\r\n");
}

}  // namespace
}  // namespace qvrcom::jobs
