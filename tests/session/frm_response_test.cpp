#include "session/frm_response.h"

#include <gmock/gmock.h>

#include "base/fault.h"
#include "session/memory_suite.h"

namespace qvrcom::session {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Texts = std::vector<std::string>;

// A whole run of the dialog on memory parts.
struct DialogRun : MemorySuite {
  void go(std::span<const Operation> table = operations()) {
    frmResponse dialog(parts(), view, table);
    ASSERT_TRUE(dialog.Form_Load());
    view.show_modal(dialog);
    dialog.Form_Unload();
  }
  // Presses Cancel once `when` holds while events run.
  void cancel_when(std::function<bool()> when) {
    on_event = [this, when] {
      if (!view.closed && when()) view.dialog->cmdCancel_Click();
    };
  }
  void cancel_at(const std::string& info) {
    cancel_when([this, info] { return view.infos.back() == info; });
  }

  RecordingView view;
};

const std::string kRetrieve = operation::kRetrieveStatistics;
const std::string kScheduled = "Required Action(s) Scheduled Successfully";
const std::string kTalking = "Communicating with QVR+/RDN";
const std::string kJob = "Nov1526121005001";
const char* const kError = "Communication error, see JobPilot for details";
const char* const kUnknown =
    "Site : USA_Office\r\nFW Version : 0\r\nWarning: The QVR+/RDN version is unknown. Please retrieve "
    "QVR+/RDN system information.\r\n\r\nAdministration -> System -> System Commands -> Retrieve QVR+/RDN "
    "System Information";

struct Case {
  const char* name;
  std::function<void(DialogRun&)> arrange;
  Texts infos;
  Texts messages;
  const char* requests;
  Texts left;  // in the scheduler folder
  const char* csv = "";
};

const std::string kReset = operation::kResetStatistics;
const std::string kBoth = operation::kRetrieveResetStatistics;
constexpr const char* kCsv = "C:\\Docs\\Corbelin\\QVRCOM+\\Stats\\Stats1.csv";

const std::vector<Case> kCases = {
    {"completed",
     [](DialogRun&) {},
     {kRetrieve, "Creating Script", kTalking, "Processing Data ...", "Completed " + kRetrieve},
     {},
     "J1 J5 J6 J2",
     {},
     kCsv},
    {"reset",
     [](DialogRun& r) { r.session.run.CurrentOperation = kReset; },
     {kReset, "Creating Script", kTalking, "Completed " + kReset},
     {},
     "J1 J5 J6 J2",
     {}},
    {"both",
     [](DialogRun& r) { r.session.run.CurrentOperation = kBoth; },
     {kBoth, "Creating Script", kTalking, "Processing Data ...", "Completed " + kRetrieve},
     {},
     "J1 J5 J6 J2",
     {},
     kCsv},
    {"error",
     [](DialogRun& r) {
       r.session.run.CurrentOperation = kBoth;
       r.scheduler.result_file = "error.sch";
     },
     {kBoth, "Creating Script", kTalking, "Error " + kBoth},
     {kError},
     "J1 J5 J6 J2",
     {}},
    {"cancelled in JobPilot",
     [](DialogRun& r) { r.scheduler.result_file = "cancelled.sch"; },
     {kRetrieve, "Creating Script", kTalking, "Cancelled " + kRetrieve},
     {"Communication cancelled from JobPilot"},
     "J1 J5 J6 J2",
     {}},
    {"no answer, then Cancel",
     [](DialogRun& r) {
       r.scheduler.result_file = "";
       r.cancel_when([&r] { return r.clock.slept > std::chrono::minutes(10); });
     },
     {kRetrieve, "Creating Script", kTalking},
     {},
     "J1 J5 J5 J2",
     {kJob}},
    {"Cancel before the posts",
     [](DialogRun& r) { r.cancel_at(kTalking); },
     {kRetrieve, "Creating Script", kTalking},
     {},
     "J5 J2",
     {}},
    {"Cancel before the folder", [](DialogRun& r) { r.cancel_at(kRetrieve); }, {kRetrieve}, {}, "J5", {}},
    {"unknown firmware",
     [](DialogRun& r) { r.session.site.SiteConnections[0].fields[11] = "0"; },
     {kRetrieve},
     {kUnknown},
     "",
     {}},
    {"old kind",
     [](DialogRun& r) { r.session.site.DeviceGeneration = "OLD"; },
     {kRetrieve},
     {"Not implement for Old QVR yet"},
     "",
     {}},
    {"older statistics",
     [](DialogRun& r) { r.session.site.SiteConnections[0].fields[11] = "5.ca"; },
     {kRetrieve, "Creating Script"},
     {"Error_Handler: ReceiveStatSinPart_NewQVR\r\nOlder statistics form"},
     "",
     {}},
    {"save fails, download kept",
     [](DialogRun& r) {
       r.session.run.StatsResultFile = "";
       r.files.before = [](std::string_view, const std::string& path) {
         if (path == kCsv) throw base::Fault(base::kDiskFull, path);
       };
     },
     {kRetrieve, "Creating Script", kTalking, "Processing Data ..."},
     {"Error_Handler: ProcessReceiveStatSinPart_NewQVR_NewStats\r\nDisk full"},
     "J1 J5 J6 J2",
     {kJob}},
    {"name that no index line can hold",
     [](DialogRun& r) {
       r.session.site.SiteConnections[0].fields[0] = "A;B";
       r.session.site.SelectedSites[0] = "7";
     },
     {kRetrieve, "Creating Script", kTalking},
     {"Error_Handler: ReceiveStatSinPart_NewQVR\r\nJob not listed"},
     "",
     {}},
    {"missing trailing blank",
     [](DialogRun& r) { r.session.run.CurrentOperation.pop_back(); },
     {},
     {},
     "",
     {}},
    {"scheduler cannot be started",
     [](DialogRun& r) { r.scheduler.window.reset(); },
     {kRetrieve, "Creating Script", kTalking},
     {"SCHEDULER not found!", "SCHEDULER not found!", "SCHEDULER not found!", "SCHEDULER not found!"},
     "",
     {}},
    {"scheduler dies",
     [](DialogRun& r) {
       r.scheduler.result_file = "";
       r.scheduler.vanishes = true;
       r.programs.on_start = [&r] { r.scheduler.open(); };
     },
     {kRetrieve, "Creating Script", kTalking},
     {},
     "J1 J5 J5 J2",
     {kJob}},
    {"to be run later",
     [](DialogRun& r) {
       r.session.run.ImmediateRun = false;
       r.session.job.StartDate = "46400.25";
       r.session.job.StopDate = "46500";
       r.session.job.Interval = "1";
       r.session.job.Period = "Day(s)";
     },
     {kRetrieve, "Creating Script", kScheduled},
     {},
     "?1",
     {kJob, "index.sch"}},
    {"first of two refused",
     [](DialogRun& r) {
       r.session.site.SiteConnections[0].fields[11] = "0";
       r.add_site("Depot", "102", "8", "6.62");
     },
     {kRetrieve, kRetrieve, "Creating Script", kTalking, "Processing Data ...", "Completed " + kRetrieve},
     {kUnknown},
     "J1 J5 J6 J2",
     {},
     kCsv},
};

TEST(frmResponse, RunsAnOperationToItsEnd) {
  for (const Case& each : kCases) {
    SCOPED_TRACE(each.name);
    DialogRun run;
    each.arrange(run);
    run.go();
    EXPECT_EQ(run.view.infos, each.infos);
    EXPECT_EQ(run.ui.texts(), each.messages);
    EXPECT_EQ(run.requests(), each.requests);
    EXPECT_EQ(run.left_behind(), each.left);
    EXPECT_EQ(run.session.run.StatsResultFile, each.csv);
    for (const char* list : {"CompletedToProcess.sch", "ErrorToProcess.sch", "CancelledToProcess.sch"}) {
      if (std::string(each.name).starts_with("save fails")) continue;  // its job can still be taken over
      EXPECT_LE(run.files.content["S:\\" + std::string(list)].size(), 2U) << list;
    }
    if (run.view.closed || each.infos.empty()) continue;
    EXPECT_FALSE(run.view.timer);
    EXPECT_TRUE(run.view.enabled && run.view.visible && run.view.info_visible);
    EXPECT_EQ(run.view.caption, "OK");
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
  EXPECT_EQ(run.scheduler.scripts[0],
            "SITENAME=USA_Office;\r\nSITEID=101;\r\nQVRID=7;\r\n"
            "DESCRIPTION=Retrieve Reset Statistics for Partition 3;\r\n"
            "STARTDATE=46341.5070023148;\r\nSTOPDATE=46341.5070023148;\r\nINTERVAL=;\r\nPERIOD=;\r\n"
            "RAS=Line#555;\r\nFTPIPADDRESS=192.168.101.2;\r\nFTPUSER=admin;\r\nFTPPASSWORD=secret;\r\n"
            "FTPCONNECT;\r\nFTPACCT;part3;\r\n"
            "FTPGET;REMOTEFILE=allstats.csv;LOCALFILE=S:\\Nov1526121005001\\AllStatsP3.csv;SIZE=20000;\r\n"
            "FTPDELETE;linestat;\r\nFTPDELETE;nodestat;\r\nFTPDISCONNECT;\r\n");
  EXPECT_EQ(run.scheduler.index,
            "46341.5070023148;15/11/2026 12:10:05^Retrieve Reset Statistics for Partition 3^USA_Office^101^"
            "46341.5070023148^^^7^;S:\\Nov1526121005001\\Nov1526121005001.scr;\r\n");
  EXPECT_EQ(run.files.content[kCsv], "SiteName,USA_Office\r\nUserSiteID,101\r\nLine,Calls\r\n1,2\r\n");
  EXPECT_THAT(run.components.log, ElementsAre("Update_SiteID 7"));
  EXPECT_EQ(run.session.run.SessionConfigID, "1000");
}

TEST(frmResponse, KeepsTheRefusalOfTheLastSite) {
  DialogRun run;
  run.add_site("Depot", "102", "8", "0");
  run.go();
  EXPECT_EQ(run.view.hint, "Site : Depot\r\nFW Version : 0\r\nAction Not Taken");
  EXPECT_TRUE(run.view.hint_visible);
  EXPECT_EQ(run.scheduler.scripts.size(), 1U);
}

TEST(frmResponse, NumbersTheSitesOfOneRun) {
  DialogRun run;
  run.add_site("Depot", "102", "8", "6.62");
  run.files.make_folders("S:\\Nov1526121005002");  // left behind by an earlier run of this second
  run.go();
  ASSERT_EQ(run.scheduler.scripts.size(), 2U);
  EXPECT_THAT(run.scheduler.scripts[0], ::testing::HasSubstr("S:\\Nov1526121006001\\AllStatsP3.csv"));
  EXPECT_THAT(run.scheduler.scripts[1], ::testing::HasSubstr("S:\\Nov1526121006002\\AllStatsP3.csv"));

  frmResponse dialog(run.parts(), run.view);
  for (int i = 1; i <= 98; ++i)
    dialog.NextSequenceText();
  EXPECT_EQ(dialog.NextSequenceText(), "099");
  EXPECT_EQ(dialog.NextSequenceText(), "100");
  for (int i = 101; i <= 32767; ++i)
    dialog.NextSequenceText();
  EXPECT_THROW(dialog.NextSequenceText(), base::Fault);
}

TEST(frmResponse, ChecksTheFirmwareInFull) {
  const Operation table[] = {{kRetrieve, EntryKind::kFullCheck,
                              [](SiteOperations& all) { all.statistics.ResetStatSinPart_NewQVR(); }}};
  struct Verdict {
    const char* firmware;
    const char* machine;
    const char* message;
    platform::Icon icon;
  };
  for (const Verdict& each : {Verdict{"6.69", "2", "", {}}, Verdict{"6.69", "4", "", {}},
                              Verdict{"0", "2", kUnknown, platform::Icon::kWarning},
                              Verdict{"6.70", "2",
                                      "Site : USA_Office\r\nFW Version : 6.70\r\nThis version of software is "
                                      "incompatible with the QVR+/RDN firmware load. Please upgrade your "
                                      "software or contact Corbelin for technical assistance. Click About on "
                                      "the main menu to find Corbelin's contact information.",
                                      platform::Icon::kError}}) {
    SCOPED_TRACE(each.firmware);
    DialogRun run;
    run.session.site.SiteConnections[0].fields[11] = each.firmware;
    run.session.site.SiteConnections[0].fields[12] = each.machine;
    run.go(table);
    const bool refused = *each.message != '\0';
    EXPECT_EQ(run.ui.messages.size(), refused ? 1U : 0U);
    EXPECT_EQ(run.scheduler.scripts.size(), refused ? 0U : 1U);
    if (!refused) continue;
    EXPECT_EQ(run.ui.messages[0].text, each.message);
    EXPECT_EQ(run.ui.messages[0].title, "QVRCOM+");
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
  frmResponse dialog(run.parts(), run.view);
  ASSERT_TRUE(dialog.Form_Load());
  run.view.show_modal(dialog);
  EXPECT_EQ(run.scheduler.scripts.size(), 1U);
  EXPECT_EQ(run.session.run.SessionStatus, "Completed");
  const auto infos = run.view.infos;
  dialog.Form_Activate();
  EXPECT_EQ(run.view.infos, infos);
  EXPECT_EQ(run.view.caption, "OK");
  const std::string before = run.requests();
  dialog.cmdCancel_Click();
  EXPECT_EQ(run.view.closed, 1);
  EXPECT_EQ(run.requests(), before);
  dialog.Form_Unload();
  EXPECT_EQ(run.channel.find_window("RESPONSE DIALOG"), 0U);
}

TEST(frmResponse, CancelShowsTheRunningSession) {
  for (const auto& [name, request] :
       {std::pair{operation::kTelnetSession, "J9"}, {operation::kGetLog, "J5"}}) {
    DialogRun run;
    run.session.run.CurrentOperation = name;
    frmResponse dialog(run.parts(), run.view);
    ASSERT_TRUE(dialog.Form_Load());
    dialog.Form_Activate();
    dialog.Timer1_Timer();
    EXPECT_FALSE(run.view.info_visible);
    dialog.cmdCancel_Click();
    dialog.cmdCancel_Click();
    EXPECT_EQ(run.requests(), request);
    EXPECT_TRUE(run.session.run.CancelRequested);
  }
}

TEST(frmResponse, IsNotShownWhenItsTitleIsTaken) {
  DialogRun run;
  const auto other = run.channel.open_window("RESPONSE DIALOG", {});
  frmResponse dialog(run.parts(), run.view);
  EXPECT_FALSE(dialog.Form_Load());
  EXPECT_THAT(run.ui.texts(), ElementsAre("Error_Handler: Form_Load\r\nTitle is taken"));
  dialog.Form_Unload();
}

TEST(SessionFrame, EndsOtherOperationsWithTheNameFirst) {
  DialogRun run;
  run.session.run.SessionStatus = "Error";
  run.session.job.JobId = "x;y;S:\\Nov1526121005001\\Nov1526121005001.scr;";
  run.session.job.Suffix = "001";
  run.session.job.SessionStart = run.clock.time;
  run.files.content["S:\\index.sch"] = run.session.job.JobId + "\r\n";
  run.files.content["S:\\ErrorToProcess.sch"] = "other\r\n" + run.session.job.JobId + "\r\n";
  SessionFrame frame(run.parts().rules, run.link, run.view);
  frame.ProcessQVRComm("Send All Messages");
  EXPECT_THAT(run.view.infos, ElementsAre("Send All Messages Error"));
  EXPECT_EQ(run.files.content["S:\\ErrorToProcess.sch"], "other\r\n\r\n");
  EXPECT_THAT(run.left_behind(), IsEmpty());
}

}  // namespace
}  // namespace qvrcom::session
