#include "protocol/job_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qvrcom::protocol {
namespace {

TEST(JobReport, ReadsWhatWasWrittenAndPassesOverWhatIsTorn) {
  std::string text = report_head() + "\r\n";
  const ReportLine fetched{ReportWord::kFetched, "part3", "linestat", "linestatP3.dat", ""};
  const ReportLine failed{ReportWord::kFailed, "part3", "nodestat", "", "550 No; really\r\nnot"};
  for (const ReportLine& line : {fetched, ReportLine{ReportWord::kStoring, "", "time", "time", ""}, failed})
    text += report_line_text(line) + "\r\n";
  text += "SOMETHING;else;\r\nDELETING;part3;linestat;;;";

  const auto report = read_report(text);
  ASSERT_TRUE(report);
  ASSERT_EQ(report->lines.size(), 3U);
  EXPECT_EQ(report->lines[0], fetched);
  EXPECT_EQ(report->lines[2].text, "550 No, really  not");
  EXPECT_FALSE(report->has_deleted());
  EXPECT_TRUE(report->has_changed());
  EXPECT_EQ(report->ending(), std::nullopt);

  const auto ended = read_report(text + "\r\nENDED;;;;error;\r\n");
  EXPECT_TRUE(ended->has_deleted());
  EXPECT_EQ(ended->ending(), Ending::kError);
  EXPECT_FALSE(read_report("DELETING;part3;linestat;;;\r\n"));
}

}  // namespace
}  // namespace qvrcom::protocol
