#include "session/frm_response.h"

#include <gmock/gmock.h>

#include <cstring>
#include <map>
#include <set>

#include "base/fault.h"
#include "session/memory_suite.h"

namespace qvrcom::session {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Texts = std::vector<std::string>;

const std::string kRetrieve = operation::kRetrieveStatistics;
const std::string kReset = operation::kResetStatistics;
const std::string kBoth = operation::kRetrieveResetStatistics;
const std::string kTalking = "Communicating with QVR+/RDN";
const char* const kCsv = "C:\\Docs\\Corbelin\\QVRCOM+\\Stats\\Stats1.csv";
const char* const kUnknown =
    "Site : USA_Office\r\nFW Version : 0\r\nWarning: The QVR+/RDN version is unknown. Please retrieve "
    "QVR+/RDN system information.\r\n\r\nAdministration -> System -> System Commands -> Retrieve QVR+/RDN "
    "System Information";
const char* const kTooNew =
    "Site : USA_Office\r\nFW Version : 6.70\r\nThis version of software is incompatible with the QVR+/RDN "
    "firmware load. Please upgrade your software or contact Corbelin for technical assistance. Click About "
    "on "
    "the main menu to find Corbelin's contact information.";

const std::map<std::string, std::function<void(DialogRun&)>> kTwists = {
    {"", [](DialogRun&) {}},
    {"cancel late",
     [](DialogRun& run) { run.cancel_when([&run] { return run.clock.slept > std::chrono::minutes(10); }); }},
    {"cancel at the posts", [](DialogRun& run) { run.cancel_at(kTalking); }},
    {"cancel at once", [](DialogRun& run) { run.cancel_at(kRetrieve); }},
    {"old kind", [](DialogRun& run) { run.session.site.DeviceGeneration = "OLD"; }},
    {"disk full",
     [](DialogRun& run) {
       run.files.before = [](std::string_view, const std::string& path) {
         if (path == kCsv) throw base::Fault(base::kDiskFull, path);
       };
     }},
    {"no such partition", [](DialogRun& run) { run.components.answers["Get_Partition_Rows"] = "none"; }},
    {"no CSV", [](DialogRun& run) { run.components.answers["WriteStatsCsv"] = "No rows"; }},
    {"bad lines", [](DialogRun& run) { run.components.answers["DecodeLineStats"] = "Bad lines"; }},
    {"name with ;",
     [](DialogRun& run) {
       run.session.site.SiteConnections[0].fields[0] = "A;B";
       run.session.site.SelectedSites[0] = "7";
     }},
    {"bad method",
     [](DialogRun& run) {
       run.session.site.SiteConnections[0].fields[base::SiteConnection::kConnectMethod] = "x";
     }},
    {"no JobPilot", [](DialogRun& run) { run.scheduler.window.reset(); }},
    {"JobPilot is slow",
     [](DialogRun& run) {
       run.scheduler.window.reset();
       run.programs.on_start = [&run] {
         if (run.programs.started.size() == 2) run.scheduler.open();
       };
     }},
    {"JobPilot dies",
     [](DialogRun& run) {
       run.scheduler.vanishes = true;
       run.programs.on_start = [&run] { run.scheduler.open(); };
     }},
    {"later",
     [](DialogRun& run) {
       run.session.run.ImmediateRun = false;
       run.session.job.StartDate = "46400.25";
     }},
};

// Operation | firmware | JobPilot's list | twist | how many of the status lines name, script, communication
// and processing are shown | requests | left in the scheduler folder | last status line | messages. "~" is a
// blank at the end, "#" a line end, "..." the name of a statistics operation without its first word.
constexpr const char* kCases =
    R"(Retrieve ...~|6.62|completed|                   |4|J1 J5 J6 J2|                 |Completed Retrieve ...~|
Reset ...~         |6.62|completed|                   |3|J1 J5 J6 J2|                 |Completed Reset ...~|
Reset ...~         |5.ca|completed|                   |3|J1 J5 J6 J2|                 |Completed Reset ...~|
Retrieve Reset ...~|6.62|completed|                   |4|J1 J5 J6 J2|                 |Completed Retrieve ...~|
Retrieve Reset ...~|6.62|error    |                   |3|J1 J5 J6 J2|                 |Error Retrieve Reset ...~|Communication error, see JobPilot for details
Retrieve ...~      |6.62|cancelled|                   |3|J1 J5 J6 J2|                 |Cancelled Retrieve ...~|Communication cancelled from JobPilot
Retrieve ...~      |6.62|         |cancel late        |3|J1 J5 J5 J2|Nov1526121005001 ||
Retrieve ...~      |6.62|         |cancel at the posts|3|J5 J2      |                 ||
Retrieve ...~      |6.62|         |cancel at once     |1|J5         |                 ||
Retrieve ...~      |6.62|         |old kind           |1|           |                 ||Not implement for Old QVR yet
Retrieve ...~      |5.ca|completed|                   |4|J1 J5 J6 J2|                 |Completed Retrieve ...~|
Retrieve Reset ...~|5.ca|completed|                   |4|J1 J5 J6 J2|                 |Completed Retrieve Reset ...~|
Retrieve Reset ...~|5.ca|error    |                   |3|J1 J5 J6 J2|                 |Error Retrieve Reset ...~|Communication error, see JobPilot for details
Retrieve ...~      |5.ca|completed|bad lines          |4|J1 J5 J6 J2|                 |Completed Retrieve ...~|Bad lines
Retrieve ...~      |5.ca|completed|no such partition  |4|J1 J5 J6 J2|Nov1526121005001 |Completed Retrieve ...~|
Retrieve ...~      |5.ca|completed|no CSV             |4|J1 J5 J6 J2|                 |Completed Retrieve ...~|No rows
Retrieve ...~      |6.62|completed|disk full          |4|J1 J5 J6 J2|Nov1526121005001 ||Error_Handler: ProcessReceiveStatSinPart_NewQVR_NewStats#Disk full
Retrieve ...~      |6.62|         |name with ;        |3|           |                 ||Error_Handler: ReceiveStatSinPart_NewQVR#Job not listed
Retrieve ...~      |6.62|         |bad method         |2|           |                 ||Error_Handler: ReceiveStatSinPart_NewQVR#Type mismatch
Reset ...          |6.62|         |                   |0|           |                 ||
Retrieve ...~      |6.62|         |no JobPilot        |3|           |                 ||SCHEDULER not found! SCHEDULER not found! SCHEDULER not found! SCHEDULER not found!
Retrieve ...~      |6.62|         |JobPilot is slow   |3|J5 J5 J2   |                 ||SCHEDULER not found!
Retrieve ...~      |6.62|         |JobPilot dies      |3|J1 J5 J5 J2|Nov1526121005001 ||
Retrieve ...~      |6.62|         |later              |2|?1         |Nov1526121005001 index.sch|Required Action(s) Scheduled Successfully|)";

std::string joined(const Texts& texts) {
  std::string all;
  for (const std::string& text : texts)
    all += (all.empty() ? "" : " ") + text;
  return all;
}

// One cell of the table as the text that it stands for.
std::string cell(std::string_view text) {
  std::string plain(base::trim(text));
  for (const auto& [sign, meaning] :
       {std::pair{"...", "Statistics for Partition"}, {"~", " "}, {"#", "\r\n"}}) {
    const auto at = plain.find(sign);
    if (at != std::string::npos) plain.replace(at, std::strlen(sign), meaning);
  }
  return plain;
}

TEST(frmResponse, RunsAnOperationToItsEnd) {
  for (const std::string_view row : base::lines_of(kCases)) {
    SCOPED_TRACE(row);
    Texts cells;
    for (const std::string_view text : base::split(row, "|"))
      cells.push_back(cell(text));
    ASSERT_EQ(cells.size(), 9U);
    const auto steps = static_cast<std::size_t>(std::stoi(cells[4]));
    DialogRun run;
    run.session.run.CurrentOperation = cells[0];
    run.session.site.SiteConnections[0].fields[base::SiteConnection::kFirmwareVersion] = cells[1];
    run.scheduler.result_file = cells[2].empty() ? "" : cells[2] + ".sch";
    kTwists.at(cells[3])(run);
    run.go();
    Texts infos{cells[0], "Creating Script", kTalking, "Processing Data ..."};
    infos.resize(steps);
    if (!cells[7].empty()) infos.push_back(cells[7]);
    EXPECT_EQ(run.view.infos, infos);
    EXPECT_EQ(run.requests(), cells[5]);
    EXPECT_EQ(joined(run.left_behind()), cells[6]);
    EXPECT_EQ(joined(run.ui.texts()), cells[8]);
    const bool kept = std::set<std::string>{"disk full", "no such partition"}.contains(cells[3]);
    const bool no_csv = kept || cells[3] == "no CSV";
    EXPECT_EQ(run.pending_lines(), kept ? 1U : 0U);
    const std::string csv = steps < 4 || no_csv ? "" : cells[1] == "5.ca" ? "Stats3.csv" : kCsv;
    EXPECT_EQ(run.session.run.StatsResultFile, csv);
    const bool says_why = (no_csv && cells[3] != "disk full") || cells[3] == "bad lines";
    const std::string& why = run.result.missing;
    EXPECT_EQ(why.empty(), !says_why);
    const std::string log = run.folders.GetLogsFolder() + run.session.job.Name + ".log";
    EXPECT_EQ(run.files.content[log], why.empty() ? "" : "2026-11-15 12:10:05 " + why + "\r\n");
    if (run.view.closed || steps == 0) continue;
    EXPECT_FALSE(run.view.timer);
    EXPECT_TRUE(run.view.enabled && run.view.visible && run.view.info_visible);
    EXPECT_EQ(run.view.caption, "OK");
  }
}

TEST(frmResponse, GoesOnBehindARefusedSite) {
  for (const bool first : {true, false}) {
    DialogRun run;
    run.add_site("Depot", "102", "8", "6.62");
    run.session.site.SiteConnections[first ? 0 : 1].fields[base::SiteConnection::kFirmwareVersion] = "0";
    run.go();
    EXPECT_EQ(run.scheduler.scripts.size(), 1U);
    EXPECT_EQ(run.ui.messages.size(), 1U);
    EXPECT_EQ(run.view.caption, "OK");
    EXPECT_TRUE(run.view.visible);
    EXPECT_EQ(run.view.hint_visible, !first);  // the text of the last site stays
    EXPECT_EQ(run.view.hint,
              first ? SessionFrame::kHint : "Site : Depot\r\nFW Version : 0\r\nAction Not Taken");
  }
}

TEST(frmResponse, WritesScriptIndexLineAndCsvToTheByte) {
  DialogRun run;
  run.session.run.CurrentOperation = kBoth;
  run.session.site.SiteConnections[0].fields[base::SiteConnection::kConnectMethod] = "1";
  run.session.site.SiteConnections[0].fields[base::SiteConnection::kModemAddress] = "192.168.101.2";
  run.session.site.SiteConnections[0].fields[base::SiteConnection::kDialupConnection] = "Line";
  run.session.site.SiteConnections[0].fields[base::SiteConnection::kNumberToDial] = "555";
  run.go();
  ASSERT_EQ(run.scheduler.scripts.size(), 1U);
  const std::string name = kBoth + "3";
  EXPECT_EQ(run.scheduler.scripts[0],
            script_head(name, "7", "RAS=Line#555;\r\nFTPIPADDRESS=192.168.101.2") +
                transfer("FTPACCT;part3;\r\nFTPGET;REMOTEFILE=allstats.csv;LOCALFILE=S:\\Nov1526121005001\\"
                         "AllStatsP3.csv;SIZE=20000;\r\nFTPDELETE;linestat;\r\nFTPDELETE;nodestat;\r\n"));
  EXPECT_EQ(run.scheduler.index, index_line(name, "Nov1526121005001"));
  EXPECT_EQ(run.files.content[kCsv], "SiteName,USA_Office\r\nUserSiteID,101\r\nLine,Calls\r\n1,2\r\n");
  EXPECT_THAT(run.components.calls(), ElementsAre("Update_SiteID 7"));
  EXPECT_EQ(run.session.run.SessionConfigID, "1000");
}

TEST(frmResponse, NumbersTheSitesOfOneRun) {
  DialogRun run;
  run.add_site("Depot", "102", "8", "6.62");
  // Left behind by earlier runs: a folder of this second, a log of the next one.
  run.files.make_folders("S:\\Nov1526121005002");
  run.files.content[run.folders.GetLogsFolder() + "Nov1526121006001.log"] = "";
  run.go();
  ASSERT_EQ(run.scheduler.scripts.size(), 2U);
  EXPECT_THAT(run.scheduler.scripts[0], ::testing::HasSubstr("S:\\Nov1526121007001\\AllStatsP3.csv"));
  EXPECT_THAT(run.scheduler.scripts[1], ::testing::HasSubstr("S:\\Nov1526121007002\\AllStatsP3.csv"));

  frmResponse dialog(run.parts(), run.window);
  for (int i = 1; i < 32767; ++i)
    dialog.NextSequenceText();
  EXPECT_EQ(dialog.NextSequenceText(), "32767");
  EXPECT_THROW(dialog.NextSequenceText(), base::Fault);
}

TEST(frmResponse, WidensAListForItsLongestText) {
  struct TwipList : ExtentList {
    double text_width(const std::string& text) const override { return 150.0 * double(text.size()); }
    double units_per_pixel() const override { return 15; }
    void set_horizontal_extent(int pixels) override { extents.push_back(pixels); }
    std::vector<int> extents;
  } list;
  DialogRun run;
  frmResponse dialog(run.parts(), run.window);
  for (const char* text : {"MSG1", "MSG12345", ""})
    dialog.UpdateListExtent(text, list);
  EXPECT_EQ(list.extents, (std::vector<int>{60, 100, 100}));
}

TEST(frmResponse, ChecksTheFirmwareInFull) {
  const Operation table[] = {{kRetrieve, EntryKind::kFullCheck,
                              [](SiteOperations& all) { all.statistics.ResetStatSinPart_NewQVR(); }}};
  struct Verdict {
    const char *firmware, *machine, *message;
    platform::Icon icon;
  };
  for (const Verdict& each : {Verdict{"6.69", "2", "", {}}, Verdict{"1.30", "", "", {}},
                              Verdict{"0", "2", kUnknown, platform::Icon::kWarning},
                              Verdict{"6.70", "2", kTooNew, platform::Icon::kError}}) {
    SCOPED_TRACE(each.firmware);
    DialogRun run;
    run.engine.answer("QVRSettings", {"Machine_Type_ID"}, {{"3"}});  // of the current configuration
    run.session.site.SiteConnections[0].fields[11] = each.firmware;
    run.session.site.SiteConnections[0].fields[12] = each.machine;
    run.go(table);
    const bool asks = *each.machine == '\0';
    EXPECT_EQ(run.session.site.CurrentConfigID, asks ? "5" : "");
    const bool refused = *each.message != '\0';
    EXPECT_EQ(run.ui.messages.size(), refused ? 1U : 0U);
    EXPECT_EQ(run.scheduler.scripts.size(), refused ? 0U : 1U);
    if (!refused) continue;
    EXPECT_EQ(run.ui.messages[0].text, each.message);
    EXPECT_EQ(run.ui.messages[0].icon, each.icon);
  }
}

TEST(frmResponse, ActivationStartsAnOperationOnce) {
  DialogRun run;
  int activations = 0;
  run.on_event = [&] {
    if (run.view.infos.back() == "Creating Script" && activations++ == 0) {
      run.session.run.CurrentOperation.clear();
      run.view.timer = false;
      run.view.dialog->Form_Activate();
      EXPECT_TRUE(run.view.timer);
    }
    if (run.view.infos.back() == "Processing Data ...") {
      run.view.dialog->cmdCancel_Click();  // disabled
      EXPECT_EQ(run.view.closed, 0);
    }
  };
  frmResponse dialog(run.parts(), run.window);
  ASSERT_TRUE(dialog.Form_Load());
  run.window.show_modal(dialog);
  EXPECT_EQ(run.scheduler.scripts.size(), 1U);
  EXPECT_EQ(run.session.run.SessionStatus, "Completed");
  const auto infos = run.view.infos;
  dialog.Form_Activate();
  EXPECT_EQ(run.view.infos, infos);
  EXPECT_EQ(run.view.caption, "OK");
  const std::string before = run.requests();
  dialog.Timer1_Timer();
  EXPECT_FALSE(run.view.info_visible);
  dialog.cmdCancel_Click();
  EXPECT_EQ(run.view.closed, 1);
  EXPECT_EQ(run.requests(), before);
  dialog.Form_Unload();
  EXPECT_EQ(run.channel.find_window("RESPONSE DIALOG"), 0U);
}

// A command whose job somebody else wrote: nobody but the dialog tells that the session is over.
TEST(frmResponse, WaitsForACommandOfTheHost) {
  const std::string line = "x;y;S:\\Nov1526121005000\\Nov1526121005000.scr;";
  for (const bool cancelled : {false, true}) {
    DialogRun run;
    run.files.make_folders("S:\\Nov1526121005000");
    run.files.content["S:\\Nov1526121005000\\Nov1526121005000.scr"] = "";
    run.files.content["S:\\index.sch"] = line + "\r\n";
    if (!cancelled) run.files.content["S:\\error.sch"] = line + "\r\n";
    run.session.job.JobId = line;
    run.session.run.CurrentOperation = operation::kTelnetSession;
    run.scheduler.answers = !cancelled;
    if (cancelled) run.cancel_at(operation::kTelnetSession);
    run.go();
    EXPECT_EQ(run.requests(), cancelled ? "J9 J2" : "J2 J6");
    EXPECT_EQ(run.view.infos.back(), std::string(operation::kTelnetSession) + (cancelled ? "" : " Error"));
    EXPECT_THAT(run.left_behind(), ElementsAre("Nov1526121005000"));
    EXPECT_EQ(run.view.caption, "OK");
  }
}

TEST(frmResponse, IsNotShownWhenItsTitleIsTaken) {
  DialogRun run;
  const auto other = run.channel.open_window("RESPONSE DIALOG", {});
  frmResponse dialog(run.parts(), run.window);
  EXPECT_FALSE(dialog.Form_Load());
  EXPECT_THAT(run.ui.texts(), ElementsAre("Error_Handler: Form_Load\r\nTitle is taken"));
  dialog.Form_Unload();
}

TEST(frmResponse, TakesAJobBackThatTheSchedulerWasNeverToldOf) {
  DialogRun run;
  run.session.run.CurrentOperation = kBoth;
  run.scheduler.window.reset();
  run.programs.on_start = [] { throw base::Fault("Path/File access error", "QVRCOM+.ini"); };
  run.go();
  EXPECT_THAT(run.ui.texts(),
              ElementsAre("Error_Handler: ReceiveResetStatSinPart_NewQVR\r\nPath/File access error"));
  EXPECT_THAT(run.left_behind(), IsEmpty());
}

TEST(SessionFrame, EndsOtherOperationsWithTheNameFirst) {
  DialogRun run;
  run.session.run.SessionStatus = "Error";
  run.session.job.JobId = "x;y;S:\\Nov1526121005001\\Nov1526121005001.scr;";
  run.session.job.Suffix = "001";
  run.session.job.SessionStart = run.clock.time;
  run.files.content["S:\\index.sch"] = run.session.job.JobId + "\r\n";
  run.files.content["S:\\ErrorToProcess.sch"] = "other\r\n" + run.session.job.JobId + "\r\n";
  SessionFrame frame(run.parts().rules, run.link, run.control, run.window);
  frame.ProcessQVRComm("Send All Messages");
  EXPECT_THAT(run.view.infos, ElementsAre("Send All Messages Error"));
  EXPECT_EQ(run.files.content["S:\\ErrorToProcess.sch"], "other\r\n\r\n");
  EXPECT_THAT(run.left_behind(), IsEmpty());
}

}  // namespace
}  // namespace qvrcom::session
