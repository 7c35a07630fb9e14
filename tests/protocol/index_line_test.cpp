#include "protocol/index_line.h"

#include <gtest/gtest.h>

#include "protocol/job_name.h"

namespace qvrcom::protocol {
namespace {

const IndexLineText kValues{
    "46341.5", "15/11/2026 12:00:00", "Retrieve", "Main", "A1", "46342.25", "2", "Days",
    "17",      "S:\\Nov1\\Nov1.scr"};

TEST(IndexLine, ReadsWhatIsWritten) {
  const std::string text = index_line_text(kValues);
  EXPECT_EQ(text, "46341.5;15/11/2026 12:00:00^Retrieve^Main^A1^46342.25^2^Days^17^;S:\\Nov1\\Nov1.scr;");
  const auto line = read_index_line(text).line;
  ASSERT_TRUE(line);
  EXPECT_EQ(line->creation, 46341.5);
  EXPECT_EQ(line->start, 46342.25);
  EXPECT_EQ(index_line_text({"46341.5", line->created, line->description, line->site_name, line->site_id,
                             "46342.25", line->interval, line->period, line->device_id, line->script_path}),
            text);
  EXPECT_EQ(line->job, "Nov1");
}

TEST(IndexLine, SaysWhyATextIsNone) {
  const auto with = [](std::string IndexLineText::*member, const char* value) {
    IndexLineText values = kValues;
    values.*member = value;
    return index_line_text(values);
  };
  const std::string good = index_line_text(kValues);
  const struct {
    std::string text;
    const char* reason;
  } rows[] = {{"", "not three fields closed by \";\""},
              {good.substr(0, good.size() - 1), "not three fields closed by \";\""},
              {with(&IndexLineText::description, "a;b"), "not three fields closed by \";\""},
              {with(&IndexLineText::site_name, "a^b"), "not eight items closed by \"^\""},
              {with(&IndexLineText::creation, "today"), "the creation value is no number"},
              {with(&IndexLineText::start, ""), "the start is no number"},
              {with(&IndexLineText::description, "a\tb"), "control characters in the line"},
              {with(&IndexLineText::description, std::string(5000, 'x').c_str()), "the line is too long"}};
  for (const auto& row : rows)
    EXPECT_EQ(read_index_line(row.text).reason, row.reason) << row.text;
}

TEST(JobName, IsTakenFromScriptsOfJobsAlone) {
  const struct {
    const char *path, *job;
  } rows[] = {{"S:\\Nov1\\Nov1.scr", "Nov1"}, {"Nov1\\Nov1.scr", "Nov1"}, {"S:\\Nov1\\Nov2.scr", ""},
              {"S:\\..\\...scr", ""},         {"Nov1.scr", ""},           {"\\.scr", ""},
              {"S:\\a/b\\a/b.scr", ""},       {"S:\\Nov1\\Nov1.txt", ""}, {"", ""}};
  for (const auto& row : rows)
    EXPECT_EQ(job_of_script(row.path), row.job) << row.path;
}

}  // namespace
}  // namespace qvrcom::protocol
