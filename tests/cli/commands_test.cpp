#include <gmock/gmock.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <fstream>
#include <thread>

#include "cli/command_run.h"
#include "cli/commands.h"
#include "cli/invocation.h"

namespace qvrcom::cli {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

// On a machine that is set up and has the sites "Berne - 7" (key 1) and "Office - 1" (key 2).
class CommandsTest : public testing::Test {
 protected:
  CommandsTest() {
    EXPECT_EQ(run({"setup"}), 0);
    EXPECT_EQ(run({"sites", "add", "--name", "Berne", "--id", "7", "--method", "2", "--lan", "192.0.2.7",
                   "--access-code", "-", "--firmware", "6.61"},
                  "secret\r\nnever read\n"),
              0);
    EXPECT_EQ(run.out, "1\n");
    EXPECT_EQ(run({"sites", "add", "--name", "Office", "--id", "1", "--number", ""}), 0);
  }

  QJsonDocument json() const { return QJsonDocument::fromJson(QByteArray::fromStdString(run.out)); }
  void write(const std::string& name, const std::string& text) { std::ofstream(run.path(name)) << text; }

  CommandRun run;
};

TEST_F(CommandsTest, SetUpAddsTheSampleAndFoldersAreNative) {
  EXPECT_EQ(run({"setup", "--sample"}), 0);
  EXPECT_THAT(run.out, HasSubstr("USA_Office - 101"));
  EXPECT_EQ(run({"folders", "--json"}), 0);
  const QJsonObject folders = json().object();
  EXPECT_THAT(folders.keys(), ElementsAre("application", "application-data", "database", "documents", "logs",
                                          "messages", "same-logs", "scheduler", "statistics"));
  EXPECT_TRUE(QFile::exists(folders["scheduler"].toString()));
}

TEST_F(CommandsTest, SitesListTellsNullEmptyAndNumberApartAndKeepsTheAccessCode) {
  EXPECT_EQ(run({"sites", "list", "--json"}), 0);
  const QJsonObject berne = json()[0].toObject();
  EXPECT_EQ(berne["site-id"], QJsonValue(1));
  EXPECT_EQ(berne["method"], QJsonValue(2));
  EXPECT_EQ(berne["id"], QJsonValue("7"));
  EXPECT_TRUE(berne["modem"].isNull());
  EXPECT_FALSE(berne.contains("access-code"));
  EXPECT_EQ(json()[1]["number"], QJsonValue(""));
  EXPECT_EQ(run({"sites", "list"}), 0);
  EXPECT_EQ(run.out,
            "SITE  NAME    ID  CARD-TYPE  METHOD  LAN        MODEM  DIALUP  NUMBER  FIRMWARE\n"
            "1     Berne   7              2       192.0.2.7                         6.61\n"
            "2     Office  1\n");
  EXPECT_EQ(run({"sites", "list", "--json", "--show-access-codes"}), 0);
  EXPECT_EQ(json()[0]["access-code"], QJsonValue("secret"));
}

TEST_F(CommandsTest, SitesAreChangedByAnyKey) {
  ASSERT_EQ(mkfifo(run.path("code").c_str(), 0600), 0);
  std::thread writer([&] { write("code", "from a pipe\nsecond line\n"); });  // waits for a reader
  EXPECT_EQ(run({"sites", "edit", "Berne - 7", "--id", "8", "--unset", "firmware", "--lan", "",
                 "--access-code-file", run.path("code")}),
            0);
  writer.join();
  EXPECT_EQ(run({"sites", "list", "--json", "--show-access-codes"}), 0);
  const QJsonObject berne = json()[0].toObject();
  EXPECT_EQ(berne["name"], QJsonValue("Berne"));
  EXPECT_EQ(berne["id"], QJsonValue("8"));
  EXPECT_TRUE(berne["firmware"].isNull());
  EXPECT_EQ(berne["lan"], QJsonValue(""));
  EXPECT_EQ(berne["access-code"], QJsonValue("from a pipe"));
  EXPECT_EQ(run({"sites", "remove", "8", "2"}), 0);
  EXPECT_EQ(run({"sites", "list", "--json"}), 0);
  EXPECT_EQ(json().array().size(), 0);
}

TEST_F(CommandsTest, RefusalsSayWhy) {
  write("empty", "\nsecond line");
  write("a\\b", "");
  ASSERT_EQ(mkfifo(run.path("pipe").c_str(), 0600), 0);  // nobody ever writes to it
  const std::string code_file = "--access-code-file";
  const struct {
    std::vector<std::string> arguments;
    const char* reason;
  } cases[] = {
      {{"sites", "add", "--name", "x\x1b"}, "control character"},
      {{"sites", "add", "--name", "x", "--access-code", "-"}, "Standard input holds none"},
      {{"sites", "add", "--name", "x", code_file, run.path("empty")}, "holds none in its first line"},
      {{"sites", "add", "--name", "x", code_file, "/dev/zero"}, "neither a plain file nor a pipe"},
      {{"sites", "import", run.path("pipe")}, "nobody has opened the pipe"},
      {{"sites", "import", "/nowhere.csv"}, "/nowhere.csv"},
      {{"system", "prompts", run.path("a\\b"), "--site", "7"}, "a\\b is empty"},
      {{"stats", "retrieve", "--site", "7", "--site", "x", "--partition", "1"}, "No site has the key \"x\""},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(run(each.arguments), 1);
    EXPECT_THAT(run.err, HasSubstr(each.reason));
    EXPECT_EQ(run.out, "");
  }
  EXPECT_TRUE(run.screen.shown.empty());
}

TEST_F(CommandsTest, SitesPassThroughAFileAndTheStandardStreams) {
  const std::string file = run.path("sites.csv");
  EXPECT_EQ(run({"sites", "export", file}), 0);
  EXPECT_EQ(run.out, "Sites written: 2\n");
  const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
  EXPECT_FALSE(QFile::permissions(file.c_str()) & others);
  EXPECT_EQ(run({"sites", "remove", "7", "Office - 1"}), 0);
  EXPECT_EQ(run({"sites", "import", file}), 0);
  EXPECT_EQ(run.out, "Sites added: 2\n");
  EXPECT_EQ(run({"sites", "export", "-", "--without-access-codes"}), 0);
  const std::string sites = run.out;
  EXPECT_THAT(sites, HasSubstr(",Berne,7,,2,192.0.2.7,,,,6.61\r\n"));
  EXPECT_EQ(run({"sites", "edit", "7", "--lan", "x"}), 0);
  EXPECT_EQ(run({"sites", "import", "-"}, sites), 0);
  EXPECT_EQ(run.out, "Sites added: 0\nSites changed: 1\n");
  EXPECT_EQ(run({"sites", "export", "-"}), 0);
  EXPECT_THAT(run.out, HasSubstr("Berne,7,,2,192.0.2.7,,secret,"));
  EXPECT_EQ(run({"sites", "import", "-"}, "id,name\n9,Depot\n9,Depot\n"), 1);
  EXPECT_THAT(run.err, HasSubstr("standard input:3: "));
}

TEST_F(CommandsTest, SessionsRunSitesOutsidePartitionsInsideAndAFailureStopsNone) {
  run.screen.failing_partition = "2";
  run({"sites", "edit", "Office - 1", "--lan", "192.0.2.8"});
  EXPECT_EQ(run({"stats", "retrieve", "--site", "7", "--site", "Berne - 7", "--site", "Office - 1", "--reset",
                 "--partition", "1-3"}),
            1);
  const std::string operation = " Retrieve Reset Statistics for Partition ";
  EXPECT_THAT(run.screen.shown, ElementsAre("7/1" + operation, "7/2" + operation, "7/3" + operation,
                                            "1/1" + operation, "1/2" + operation, "1/3" + operation));
  EXPECT_EQ(run.out, "/stats/P1.csv\n/stats/P3.csv\n/stats/P1.csv\n/stats/P3.csv\n");
  EXPECT_EQ(run.err,
            "ERROR: went wrong\nQVRCOM+: Berne - 7, partition 2: not done.\n"
            "ERROR: went wrong\nQVRCOM+: Office - 1, partition 2: not done.\n");
  run.screen.shown.clear();
  EXPECT_EQ(run({"stats", "reset", "--site", "7", "--partition", "4"}), 0);
  EXPECT_THAT(run.screen.shown, ElementsAre("7/4 Reset Statistics for Partition "));
  run.screen.untidy_partition = "5";
  EXPECT_EQ(run({"stats", "retrieve", "--site", "7", "--partition", "5"}), 1);
  EXPECT_EQ(run.out, "/stats/P5.csv\n");
  run.screen.interrupted_partition = "6";  // which is done all the same
  run.screen.shown.clear();
  EXPECT_EQ(run({"stats", "retrieve", "--site", "7", "--partition", "6"}), 0);
  EXPECT_EQ(run({"stats", "retrieve", "--site", "7", "--partition", "6,7"}), 1);
  EXPECT_EQ(run.screen.shown.size(), 2U) << "7 is not begun";
}

TEST_F(CommandsTest, AllPartitionsAreOneJobForOldFirmwareAlone) {
  std::vector<std::string> everything = {"stats", "retrieve", "--site", "7", "--all-partitions", "--reset"};
  EXPECT_EQ(run(everything), 1);
  EXPECT_TRUE(run.screen.shown.empty());
  everything.push_back("--force");
  EXPECT_EQ(run(everything), 0);
  EXPECT_EQ(run.out, "/stats/P1.csv\n/stats/P8.csv\n");
  EXPECT_THAT(run.screen.shown, ElementsAre("7/ Retrieve Reset Statistics All Partitions"));
  run.screen.shown.clear();
  EXPECT_EQ(run({"stats", "retrieve", "--site", "7", "--all-partitions"}), 0);
  ASSERT_EQ(run.screen.shown.size(), 64U);
  EXPECT_EQ(run.screen.shown.back(), "7/64 Retrieve Statistics for Partition ");
}

TEST_F(CommandsTest, SeveralSitesAnswerUnderTheirNames) {
  run({"sites", "edit", "Office - 1", "--lan", "192.0.2.8"});
  EXPECT_EQ(run({"view", "--site", "7", "--site", "Office - 1", "--partition", "2"}), 0);
  EXPECT_EQ(run.out, "Berne - 7:\n001\n\\x1B[31m\nOffice - 1:\n001\n\\x1B[31m\n");
  EXPECT_EQ(run({"same-log", "retrieve", "--site", "7", "--site", "Office - 1"}), 0);
  EXPECT_EQ(run.out, "/same/7.log\n/same/1.log\n");
  EXPECT_EQ(run({"view", "--site", "7", "--partition", "2", "--json"}), 0);
  EXPECT_EQ(json()[0]["site-id"], QJsonValue(1));
  EXPECT_EQ(json()[0]["result"], QJsonValue("done"));
  EXPECT_EQ(json()[0]["messages"].toArray(), (QJsonArray{"001", "\x1b[31m"}));
  run.screen.failing_partition = "2";
  EXPECT_EQ(run({"view", "--site", "7", "--partition", "2", "--json"}), 1);
  EXPECT_EQ(json()[0]["result"], QJsonValue("failed"));
  EXPECT_TRUE(json()[0]["messages"].isNull());
}

TEST_F(CommandsTest, StatisticsAreShownAsTextAndAsJson) {
  write("x.csv", "SiteName,\x1b[1m\r\n\r\nLine,Calls,Busy\r\n1,\"2\r\n3\",\xFC\r\nlast\r\n");
  EXPECT_EQ(run({"stats", "show", run.path("x.csv")}), 0);
  EXPECT_EQ(run.out,
            "SiteName: \\x1B[1m\n\n"
            "Line  Calls       Busy\n"
            "1     2\\x0D\\x0A3  \xC3\xBC\n"
            "last\n");
  EXPECT_EQ(run({"stats", "show", "--json", run.path("x.csv")}), 0);
  EXPECT_EQ(run.out,
            "{\"caption\":[[\"SiteName\",\"\\u001b[1m\"]],\n\"file\":\"" + run.path("x.csv") +
                "\",\n\"rows\":[\n[\"Line\",\"Calls\",\"Busy\"],\n[\"1\",\"2\\r\\n3\",\"\xC3\xBC\"],\n"
                "[\"last\"]\n]}\n");
  EXPECT_TRUE(json().isObject());
}

TEST_F(CommandsTest, EachTableIsShownUnderItsOwnHeaderAndDamageIsTold) {
  const std::string file = run.path("x.csv");
  write("x.csv", "SiteName,A\nLine,Calls\n1,2\n\nOften used\nNode,Name,Hits\nMSG1,x\n2,\"3\n4,5\n");
  EXPECT_EQ(run({"stats", "show", file}), 1);
  EXPECT_EQ(run.out,
            "SiteName: A\n\nLine  Calls\n1     2\n\nOften used\n"
            "Node  Name          Hits\nMSG1  x\n2     3\\x0A4,5\\x0A\n");
  EXPECT_THAT(run.err, HasSubstr("x.csv\" is damaged.\n  Line 8: a quotation mark is never closed"));
  EXPECT_EQ(run({"stats", "show", "--json", file}), 1);
  const QJsonArray lines{QJsonArray{"Line", "Calls"}, QJsonArray{"1", "2"}};
  EXPECT_EQ(json()["tables"][0]["rows"].toArray(), lines);
  EXPECT_EQ(json()["tables"][1]["name"], QJsonValue("Often used"));
  for (const char* table : {"1", "line"}) {
    EXPECT_EQ(run({"stats", "show", "--json", "--table", table, file}), 1);
    EXPECT_EQ(json()["rows"].toArray(), lines);
  }
  EXPECT_EQ(run({"stats", "show", "--table", "3", file}), 1);
  EXPECT_THAT(run.err, HasSubstr("goes before a number:\n  1  Line\n  2  Often used\n"));
}

TEST_F(CommandsTest, JobsOfAllListsStandSideBySide) {
  const std::string scheduler = run.path("AppData/Corbelin/QVRCOM+/Scheduler/");
  const std::string line =
      "46341.5;15/11/2026 12:00:00^Retrieve Statistics for Partition 3^Berne^7^46341.5^^^1^;"
      "\\s\\Nov1526120000001\\Nov1526120000001.scr;\r\n";
  std::string damaged = "damaged \x1b\r\n";
  for (int i = 0; i < 21; ++i)
    damaged += "x\r\n";
  std::ofstream(scheduler + "index.sch") << line << damaged;
  std::ofstream(scheduler + "completed.sch") << line;
  EXPECT_EQ(run({"jobs", "list"}), 0);
  EXPECT_THAT(run.out, HasSubstr("Nov1526120000001  index, completed  2026-11-15 12:00:00  Berne - 7  "));
  EXPECT_THAT(run.err, HasSubstr("index.sch, line 2: "));
  EXPECT_THAT(run.err, HasSubstr("... and 2 more."));
  EXPECT_THAT(run.err, Not(HasSubstr("\x1b")));
  EXPECT_EQ(run({"jobs", "list", "--json"}), 0);
  const QJsonObject job = json()["jobs"][0].toObject();
  EXPECT_EQ(job["lists"].toArray(), (QJsonArray{"index", "completed"}));
  EXPECT_EQ(json()["problems"][0]["line"], QJsonValue(2));
  EXPECT_EQ(run({"jobs", "remove", "Nov9", "Nov9"}), 1);
  EXPECT_EQ(run.err, "QVRCOM+: Nov9: there is no such job.\n");

  ASSERT_TRUE(QDir().mkpath(QString::fromStdString(scheduler + "error.sch")));
  EXPECT_EQ(run({"jobs", "list", "--json"}), 1);
  EXPECT_EQ(json()["jobs"].toArray().size(), 1);
  EXPECT_EQ(json()["unread"][0]["file"], QJsonValue("error.sch"));
  EXPECT_EQ(run.err.find("error.sch cannot be read"), run.err.rfind("error.sch cannot be read"));
}

TEST_F(CommandsTest, TheSchedulerIsAskedAndStopped) {
  using Words = std::vector<std::string>;
  const Words questions[] = {{"scheduler", "status"}, {"scheduler", "stop"}, {"jobs", "stop", "J1"}};
  for (const bool silent : {false, true}) {
    run.scheduler.silent = silent;
    for (const Words& words : questions) {
      EXPECT_EQ(run(words), 3);
      EXPECT_EQ(run.err.find("but it does not answer.") != std::string::npos, silent) << run.err;
    }
  }
  EXPECT_EQ(run({"scheduler", "start"}), 3);
  EXPECT_THAT(run.err, HasSubstr("scheduler is running, but it does not answer."));
  run.scheduler.now = protocol::SchedulerStatus();
  run.scheduler.now->version = "9.9";
  run.scheduler.now->process = 42;
  run.scheduler.now->jobs = {{"J1", "Something", protocol::JobState::kLeftAlone}};
  EXPECT_EQ(run({"scheduler", "start"}), 0);
  EXPECT_EQ(run({"scheduler", "status"}), 0);
  EXPECT_EQ(run.out, "JobPilot 9.9, process 42\nJ1  left alone  Something\n");
  EXPECT_EQ(run({"scheduler", "status", "--json"}), 0);
  EXPECT_EQ(json()["process"], QJsonValue(42));
  EXPECT_TRUE(json()["running-job"].isNull());
  EXPECT_EQ(json()["jobs"][0]["state"], QJsonValue("left alone"));
  EXPECT_EQ(run({"jobs", "stop", "J1"}), 0);
  run.scheduler.outcome = platform::StopOutcome::kUnknownJob;
  EXPECT_EQ(run({"jobs", "stop", "J2"}), 1);
  EXPECT_EQ(run({"scheduler", "stop"}), 0);
}

TEST(CommandLine, WrongUsageIsToldBeforeAnythingIsTouched) {
  const struct {
    std::vector<std::string> arguments;
    const char* first_line;  // of standard error
  } cases[] = {
      {{"bogus"}, "There is no command \"bogus\""},
      {{"--answer", "maybe", "folders"}, "--answer: maybe not in {yes,no,ok,cancel}"},
      {{"sites", "edit", "7"}, "sites edit: no column is given"},
      {{"sites", "edit", "7", "--unset", "colour"},
       "--unset: colour not in {name,id,card-type,method,lan,modem,access-code,dialup,number,firmware}"},
      {{"sites", "edit", "7", "--unset", "name", "--name", "x"},
       "--unset name: The column is given a text, too. Leave out one of the two"},
      {{"sites", "edit", "7", "--unset", "access-code", "--access-code-file", "x"},
       "--unset access-code: The column is given a text, too. Leave out one of the two"},
      {{"sites", "edit", "7", "--name", "x", "--access-code-file", ""},
       "--access-code-file: An empty text names no file"},
      {{"sites", "add", "--access-code", "x", "--access-code-file", "y"},
       "--access-code excludes --access-code-file"},
      {{"stats", "show", "--table=", "x.csv"},
       "--table: An empty text names no table. Leave the option out for all of them"},
      {{"stats", "retrieve", "--partition", "1"}, "--site is required"},
      {{"stats", "retrieve", "--site", "1", "--partition", "1", "--all-partitions"},
       "--partition excludes --all-partitions"},
      {{"stats", "retrieve", "--site", "1"}, "--partition or --all-partitions is required"},
      {{"stats", "retrieve", "--site", "1", "--all-partitions", "--force"}, "--force requires --reset"},
      {{"system", "clock", "--site", "1", "--set", "2026-02-30 12:00:00"},
       "--set: \"2026-02-30 12:00:00\" is neither \"now\" nor a moment of 2000 to 2135 such as "
       "\"2026-11-15 12:10:05\""},
      {{"system", "log", "--site", "1", "--reset-only", "--reset"}, "--reset excludes --reset-only"},
      {{"system", "log", "--site", "1", "--site", "2", "--output", "x"},
       "--output: One file takes the log of one site"},
      {{"system", "partition", "65", "--site", "1"}, "N: Value 65 not in range 1 to 64"},
      {{"stats", "retrieve", "--site", "1", "2", "--partition", "3"},
       "The following argument was not expected: 2"},
      {{"stats", "reset", "--site", "1", "--partition", "1-65"},
       "--partition: \"1-65\" is no list of partitions: 3, 1-8 or 1,4,7, each from 1 to 64"},
      {{"setup", "--sample-address", "x"}, "--sample-address requires --sample"},
  };
  CommandRun run;
  for (const auto& each : cases) {
    EXPECT_EQ(run(each.arguments), 2) << each.first_line;
    EXPECT_EQ(run.err.substr(0, run.err.find('\n')), each.first_line);
    EXPECT_EQ(run.out, "");
  }
  EXPECT_EQ(run({"--version"}), 0);
  EXPECT_NE(run.out, "");
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
