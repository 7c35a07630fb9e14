#include "cli/invocation.h"

#include <gmock/gmock.h>

#include <QDir>

#include "cli/command_run.h"

namespace qvrcom::cli {
namespace {

using testing::HasSubstr;

TEST(CommandLine, WrongUsageIsToldBeforeAnythingIsTouched) {
  const struct {
    std::vector<std::string> arguments;
    int code;
    const char* first_line;  // of standard error
  } cases[] = {
      {{"bogus"}, 2, "There is no command \"bogus\""},
      {{"--answer", "maybe", "folders"}, 2, "--answer: maybe not in {yes,no,ok,cancel}"},
      {{"sites", "edit", "7"}, 2, "sites edit: no column is given"},
      {{"sites", "edit", "7", "--unset", "colour"},
       2,
       "--unset: colour not in {name,id,card-type,method,lan,modem,access-code,dialup,number,firmware}"},
      {{"sites", "edit", "7", "--unset", "name", "--name", "x"},
       2,
       "--unset name: The column is given a text, too. Leave out one of the two"},
      {{"sites", "edit", "7", "--unset", "access-code", "--access-code-file", "x"},
       2,
       "--unset access-code: The column is given a text, too. Leave out one of the two"},
      {{"sites", "edit", "7", "--name", "x", "--access-code-file", ""},
       2,
       "--access-code-file: An empty text names no file"},
      {{"sites", "add", "--access-code", "x", "--access-code-file", "y"},
       2,
       "--access-code excludes --access-code-file"},
      {{"stats", "show", "--table=", "x.csv"},
       2,
       "--table: An empty text names no table. Leave the option out for all of them"},
      {{"stats", "retrieve", "--partition", "1"}, 2, "--site is required"},
      {{"stats", "retrieve", "--site", "1", "--partition", "1", "--all-partitions"},
       2,
       "--partition excludes --all-partitions"},
      {{"stats", "retrieve", "--site", "1"}, 2, "--partition or --all-partitions is required"},
      {{"stats", "retrieve", "--site", "1", "--all-partitions", "--force"}, 2, "--force requires --reset"},
      {{"system", "clock", "--site", "1", "--set", "2026-02-30 12:00:00"},
       2,
       "--set: \"2026-02-30 12:00:00\" is neither \"now\" nor a moment of 2000 to 2135 such as "
       "\"2026-11-15 12:10:05\""},
      {{"system", "log", "--site", "1", "--reset-only", "--reset"}, 2, "--reset excludes --reset-only"},
      {{"system", "log", "--site", "1", "--site", "2", "--output", "x"},
       2,
       "--output: One file takes the log of one site"},
      {{"system", "partition", "65", "--site", "1"}, 2, "N: Value 65 not in range 1 to 64"},
      {{"stats", "retrieve", "--site", "1", "2", "--partition", "3"},
       2,
       "The following argument was not expected: 2"},
      {{"stats", "reset", "--site", "1", "--partition", "1-65"},
       2,
       "--partition: \"1-65\" is no list of partitions: 3, 1-8 or 1,4,7, each from 1 to 64"},
      {{"setup", "--sample-address", "x"}, 2, "--sample-address requires --sample"},
      {{"--version"}, 0, ""},
  };
  CommandRun run;
  for (const auto& each : cases) {
    EXPECT_EQ(run(each.arguments), each.code) << each.first_line;
    EXPECT_EQ(run.err.substr(0, run.err.find('\n')), each.first_line);
    EXPECT_EQ(run.out.empty(), each.code != 0);
  }
  EXPECT_TRUE(QDir(run.root.path()).isEmpty());
}

TEST(CommandLine, WithoutSetUpTheOneMessageSaysSo) {
  CommandRun run;
  EXPECT_EQ(run({"sites", "list"}), 3);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            "QVRCOM+: The application-data folder of QVRCOM+ is not there. Run \"qvrcomctl setup\".\n");
  EXPECT_EQ(run({"stats", "show", "/nowhere.csv"}), 1);
  EXPECT_THAT(run.err, HasSubstr("/nowhere.csv"));
}

}  // namespace
}  // namespace qvrcom::cli
