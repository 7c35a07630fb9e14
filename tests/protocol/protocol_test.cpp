#include <gmock/gmock.h>

#include <string>

#include "base/fault.h"
#include "base/text.h"
#include "protocol/device_address.h"
#include "protocol/index_line.h"
#include "protocol/job_name.h"
#include "protocol/job_report.h"
#include "protocol/script_grammar.h"
#include "protocol/terminal_frame.h"

namespace qvrcom::protocol {
namespace {

const ScriptHeader kHeader{"Main;Hall ", "A1",    "17",      "Retrieve", 1,       "Office", "0,12#3",
                           "10.0.0.7",   "admin", "se;cret", "46341.5",  "46342", "2",      "Days"};
const std::string kOpened = header_text(kHeader, ScriptKind::kTransfer) + "\r\n";
constexpr const char* kEnd = "FTPDISCONNECT;\r\n";

TEST(ScriptGrammar, ReadsWhatIsWritten) {
  const auto reading =
      read_script(kOpened +
                  "FTPACCT;part3;\r\n\r\nFTPGET;REMOTEFILE=dbase;LOCALFILE=S:\\J\\d.dat;SIZE=20000;\n"
                  "FTPPUT;REMOTEFILE=msg.001;LOCALFILE=S:\\J\\m;SIZE=big;\r\n"
                  "FTPGET;REMOTEFILE=log;LOCALFILE=l;\r\nFTPDELETE;linestat;\r\n" +
                  kEnd);
  ASSERT_TRUE(reading.script) << reading.problem.reason;
  EXPECT_EQ(reading.script->header, kHeader);
  const auto& commands = reading.script->commands;
  ASSERT_EQ(commands.size(), 5U);
  EXPECT_EQ(commands[0].account, "part3");
  EXPECT_EQ(commands[0].line, 14U);
  EXPECT_EQ(commands[1].kind, CommandKind::kGet);
  EXPECT_EQ(commands[1].remote, "dbase");
  EXPECT_EQ(commands[1].local, "S:\\J\\d.dat");
  EXPECT_EQ(commands[1].size, 20000U);
  EXPECT_EQ(commands[2].kind, CommandKind::kPut);
  EXPECT_EQ(commands[2].size, std::nullopt);
  EXPECT_EQ(commands[4].remote, "linestat");

  ScriptHeader direct = kHeader;
  direct.dial_up_flag = 0;
  const auto telnet = read_script(header_text(direct, ScriptKind::kTelnet));
  ASSERT_TRUE(telnet.script);
  EXPECT_EQ(telnet.script->kind, ScriptKind::kTelnet);
  EXPECT_EQ(telnet.script->header.dial_up_connection, "");
}

TEST(ScriptGrammar, SaysWhatIsWrongAndShowsNoHeaderValue) {
  const std::string telnet = "TELNETSESSION;\r\n";
  const auto without = [](std::string text, const std::string& part) {
    return text.replace(text.find(part), part.size(), "");
  };
  const struct {
    std::string text;
    std::size_t line;
    std::string shown;
    const char* reason;
  } rows[] = {
      {"", 1, "", "SITENAME= expected"},
      {without(kOpened, "cret;"), 14, "", "the script ends before FTPDISCONNECT;"},  // up to the last ";"
      {without(kOpened, "Days;"), 8, "", "the closing \";\" of PERIOD= is missing"},
      {without(kOpened, "FTPCONNECT;\r\n") + kEnd, 13, "", "FTPCONNECT; or TELNETSESSION; expected"},
      {kOpened + "FTPACCT;part3;\r\n", 15, "", "the script ends before FTPDISCONNECT;"},
      {kOpened + kEnd + kOpened, 15, "", "the script goes on behind its closing command"},
      {kOpened + "FTPPASSWORD=secret;\r\n", 14, "FTPPASSWORD", "no command of a script"},
      {kOpened + "FTPDELETE;x\r\n", 14, "FTPDELETE;x", "the closing \";\" is missing"},
      {kOpened + "FTPACCT;;\r\n", 14, "FTPACCT;;", "an account command has one account"},
      {kOpened + "FTPDELETE;a;b;\r\n", 14, "FTPDELETE;a;b;", "a delete command has one device file"},
      {kOpened + "FTPGET;REMOTEFILE=;LOCALFILE=b;\r\n", 14, "FTPGET;REMOTEFILE",
       "REMOTEFILE= is missing or empty"},
      {kOpened + "FTPPUT;REMOTEFILE=a;SIZE=1;\r\n", 14, "FTPPUT;REMOTEFILE",
       "LOCALFILE= is missing or empty"},
      {kOpened + "FTPDELETE;a\rNOOP;\r\n", 14, "FTPDELETE;a\rNOOP;", "control characters in a command"},
      {without(kOpened, "FTPCONNECT;\r\n") + telnet + "FTPACCT;part1;\r\n", 14, "FTPACCT;part1;",
       "a telnet script has no commands"},
      {std::string(kScriptLimit + 1, 'x'), 0, "", "the script is larger than 1 MiB"},
      {kOpened + std::string(kScriptLineLimit + 1, 'x'), 14, std::string(80, 'x'), "the line is too long"},
  };
  for (const auto& row : rows) {
    const auto reading = read_script(row.text);
    EXPECT_FALSE(reading.script) << row.reason;
    EXPECT_EQ(reading.problem.line, row.line) << row.reason;
    EXPECT_EQ(reading.problem.reason, row.reason);
    EXPECT_EQ(reading.problem.text, row.shown);
  }
}

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
  EXPECT_EQ(due(46341.5, 46341.5, false, base::local_time(2026, 11, 14)), Due::kNow) << "a clock set back";
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
  EXPECT_TRUE(is_job_name(std::string(64, 'x')));
  EXPECT_FALSE(is_job_name(std::string(65, 'x')));
}

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

  const auto ended = read_report(text + "\r\nENDED;;;;error;\r\nTAKING;part3;;;S;\r\n");
  EXPECT_TRUE(ended->has_deleted());
  EXPECT_EQ(ended->ending(), Ending::kError);
  EXPECT_FALSE(read_report("DELETING;part3;linestat;;;\r\n"));
}

TEST(DeviceAddress, ReadsHostAndPorts) {
  const std::pair<std::string, DeviceAddress> accepted[] = {
      {"10.0.0.9", {"10.0.0.9", 21, 23}}, {" qvr-1.local ", {"qvr-1.local", 21, 23}},
      {"host:2121", {"host", 2121, 23}},  {"127.0.0.1:2121:2323", {"127.0.0.1", 2121, 2323}},
      {"[::1]", {"::1", 21, 23}},         {"[fe80::1%eth0]:65535:1", {"fe80::1%eth0", 65535, 1}},
  };
  for (const auto& [text, address] : accepted)
    EXPECT_EQ(parse_device_address(text), address) << text;
}

TEST(DeviceAddress, RefusesWhatIsNone) {
  for (const std::string text :
       {"", "::1", ":21", "host:", "host:0", "host:65536", "host:ftp", "host:1:2:3", "[::1", "[]", "[::1]21",
        "ho st", "host/x", "host:-1", "a\nb", "user@host"}) {
    EXPECT_THROW(parse_device_address(text), base::Fault) << text;
    EXPECT_NE(device_address_problem(text), "") << text;
  }
  EXPECT_THROW(parse_device_address(std::string(301, 'a')), base::Fault);
}

TEST(TerminalFrame, IsCutOutOfAnyStream) {
  const std::string big(kTerminalPayloadLimit + 5, 'x');
  const std::string stream =
      terminal_frame_text(kTerminalAttach, "JobA") + terminal_data_text(big) + terminal_data_text("");
  const std::vector<TerminalFrame> expected{
      {'A', "JobA"}, {'D', big.substr(0, kTerminalPayloadLimit)}, {'D', "xxxxx"}};
  for (const std::size_t step : {std::size_t{1}, std::size_t{7}, stream.size()}) {
    TerminalFrameReader reader;
    std::vector<TerminalFrame> frames;
    for (std::size_t at = 0; at < stream.size(); at += step) {
      reader.add(std::string_view(stream).substr(at, step));
      while (auto frame = reader.next())
        frames.push_back(*frame);
    }
    EXPECT_EQ(frames, expected);
    EXPECT_FALSE(reader.damaged());
  }
}

TEST(TerminalFrame, AnnouncingTooMuchIsDamage) {
  TerminalFrameReader reader;
  reader.add("D\x40\x01");
  EXPECT_EQ(reader.next(), std::nullopt);
  EXPECT_TRUE(reader.damaged());
  reader.add(std::string(20000, 'x'));
  EXPECT_EQ(reader.next(), std::nullopt);
}

}  // namespace
}  // namespace qvrcom::protocol
