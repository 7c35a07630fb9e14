#include "jobs/job_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "doubles/memory_files.h"

namespace qvrcom::jobs {
namespace {

TEST(JobReport, ReadsWhatWasWrittenAndPassesOverWhatIsTorn) {
  doubles::MemoryFiles files;
  files.make_folders("S\\Job1");
  files.append_line(report_path("S\\Job1"), report_head());
  const ReportLine fetched{ReportWord::kFetched, "part3", "linestat", "linestatP3.dat", ""};
  const ReportLine failed{ReportWord::kFailed, "part3", "nodestat", "", "550 No; really\r\nnot"};
  for (const ReportLine& line : {fetched, ReportLine{ReportWord::kStoring, "", "time", "time", ""}, failed})
    files.append_line(report_path("S\\Job1"), report_line_text(line));
  files.append(report_path("S\\Job1"), "SOMETHING;else;\r\nDELETING;part3;linestat;;;");

  const auto report = report_of(files, "S\\Job1");
  ASSERT_TRUE(report);
  ASSERT_EQ(report->lines.size(), 3U);
  EXPECT_EQ(report->lines[0], fetched);
  EXPECT_EQ(report->lines[2].text, "550 No, really  not");
  EXPECT_FALSE(report->has_deleted());
  EXPECT_TRUE(report->has_changed());
  EXPECT_EQ(report->ending(), "");

  files.append(report_path("S\\Job1"), "\r\nENDED;;;;error;\r\n");
  EXPECT_TRUE(report_of(files, "S\\Job1")->has_deleted());
  EXPECT_EQ(report_of(files, "S\\Job1")->ending(), "error");
  EXPECT_FALSE(read_report("DELETING;part3;linestat;;;\r\n"));
}

}  // namespace
}  // namespace qvrcom::jobs
