#include "protocol/script_grammar.h"

#include <gtest/gtest.h>

#include <string>

#include "base/text.h"

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

}  // namespace
}  // namespace qvrcom::protocol
