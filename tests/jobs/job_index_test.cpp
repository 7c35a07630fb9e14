#include "jobs/job_index.h"

#include <gmock/gmock.h>

#include "jobs/job_parts.h"

namespace qvrcom::jobs {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kLine =
    "46341.5070023148;15/11/2026 12:10:05^Retrieve Statistics for Partition 3^Main ^A1^46341.25^2^Days^17^;"
    "S:\\Nov1526121005000\\Nov1526121005000.scr;";

TEST(JobIndex, WritesTheLineOfAJobAndSorts) {
  JobParts parts;
  parts.file("index.sch") = "5;later\r\n\r\n40;earlier";  // its end is missing
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

// As if each were removed by itself: the file is written and read again between two lines.
TEST(JobIndex, RemovesSeveralLinesInOnePass) {
  const struct {
    const char* before;
    std::vector<std::string> removed;
    const char* after;
  } rows[] = {{" b\nc \na\nx\n", {"x"}, "b\r\na\r\nc\r\n"},
              {" b\nc \na\nx\n", {"x", "y"}, "a\r\nb\r\nc\r\n"},
              {" b\nc\nB\n", {"x", "b"}, "c\r\n"},
              {" b\nc \n", {"x", " b"}, "b\r\nc\r\n"},
              {"a\nc \n", {"x", "c"}, "a\r\n"},
              {" \na\n", {"x", "y"}, "a\r\n"},
              {" a \n", {"x", "a"}, "\r\n"},
              {"a\n", {}, "a\n"}};
  for (const auto& row : rows) {
    JobParts parts;
    parts.file("index.sch") = row.before;
    parts.index.remove_index_lines(row.removed);
    EXPECT_EQ(parts.file("index.sch"), row.after) << row.before;
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

TEST(JobIndex, ReadsLines) {
  JobParts parts;
  std::vector<std::string> lines;
  bool found = false;
  parts.file("list") = "\r\n";
  parts.index.Read_Lines("list", lines, found);
  EXPECT_FALSE(found);
  parts.file("list") = "\r\nb\r\na\r\n";
  parts.index.Read_Lines("list", lines, found);
  EXPECT_TRUE(found);
  EXPECT_THAT(lines, ElementsAre("b", "a"));
}

}  // namespace
}  // namespace qvrcom::jobs
