#include <gmock/gmock.h>

#include "base/fault.h"
#include "doubles/manual_clock.h"
#include "doubles/memory_channel.h"
#include "doubles/memory_files.h"
#include "doubles/memory_machine.h"
#include "doubles/memory_programs.h"
#include "doubles/recording_user_interface.h"
#include "platform/device_connection.h"
#include "protocol/messages.h"
#include "session/memory_suite.h"
#include "session/reasoned_boxes.h"
#include "session/scheduler_link.h"
#include "session/scheduler_watch.h"

namespace qvrcom::session {
namespace {

using Post = doubles::MemoryChannel::Post;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
namespace device_fault = platform::device_fault;

struct LinkTest : testing::Test {
  LinkTest() {
    session.run.SchedulerFolder = "S:\\";
    session.job.JobId = "1;Job;";
    files.make_folders("S:");
    machine.settings[{"QVRCOM+", "Application", "AppPath"}] = "C:\\Suite";
  }
  std::unique_ptr<platform::Window> window(const char* title) {
    return channel.open_window(title, [this](auto, auto, auto, std::int64_t value) {
      passed_on.push_back(value);
      return 77;
    });
  }

  doubles::MemoryFiles files;
  doubles::MemoryMachine machine;
  doubles::ManualClock clock;
  doubles::RecordingUserInterface ui;
  doubles::MemoryChannel channel;
  doubles::MemoryPrograms programs;
  base::Session session;
  environment::FilesAndFolders folders{machine, files};
  SchedulerLink link{{session, ui, clock, files, programs, channel, folders}};
  std::vector<std::int64_t> passed_on;
};

TEST_F(LinkTest, StartsAMissingProgramAndWaitsOneSecond) {
  std::unique_ptr<platform::Window> pilot;
  clock.on_sleep = [&] { pilot = window("JOBPILOT"); };
  link.NotifyScheduler(protocol::SchedulerRequest::kShowTelnetSession);
  EXPECT_THAT(programs.started, ElementsAre("C:\\Suite\\JobPilot.exe"));
  EXPECT_EQ(clock.slept, std::chrono::seconds(1));
  EXPECT_EQ(ui.pumps, 0);
  EXPECT_THAT(channel.posts, ElementsAre(Post{"JOBPILOT", "CBL_QVRCOM_SCHEDULER", 0, 9}));
  link.NotifyScheduler(protocol::SchedulerRequest::kResultsTaken);
  EXPECT_EQ(programs.started.size(), 1U);
  EXPECT_EQ(channel.posts.size(), 2U);
}

TEST_F(LinkTest, TellsOfAMissingJobPilotButNotOfAMissingRePilot) {
  programs.answer = "There is no such program.";
  link.NotifyScheduler(protocol::SchedulerRequest::kJobsSubmitted);
  EXPECT_THAT(ui.texts(), ElementsAre("SCHEDULER not found!"));
  EXPECT_EQ(ui.messages[0].detail, "There is no such program. Start JobPilot, then try again.");
  EXPECT_TRUE(link.scheduler_missing());
  EXPECT_THAT(channel.posts, IsEmpty());
  programs.answer.clear();
  programs.says = "Its lock is a link.";
  link.NotifyScheduler(protocol::SchedulerRequest::kJobsSubmitted);
  EXPECT_THAT(ui.messages.back().detail, testing::HasSubstr("up. It says: Its lock is a link. "));
  const auto late = window("JOBPILOT");
  link.NotifyScheduler(protocol::SchedulerRequest::kShowSession);
  EXPECT_TRUE(link.scheduler_missing());  // it has not heard of the jobs
  link.NotifyScheduler(protocol::SchedulerRequest::kJobsSubmitted);
  EXPECT_FALSE(link.scheduler_missing());
  channel.posts.clear();
  link.NotifyRePilot(protocol::SchedulerRequest::kJobsSubmitted);
  EXPECT_EQ(ui.messages.size(), 2U);
  EXPECT_THAT(channel.posts, ElementsAre(Post{"", "CBL_QVRCOM_REPILOT", 0, 1}));
}

TEST_F(LinkTest, SettlesTheStatusFromTheThreeFiles) {
  struct Case {
    std::map<std::string, std::string> files;
    const char* status;
  };
  const Case cases[] = {
      {{}, ""},
      {{{"completed.sch", " 1;Job;\r\n"}, {"error.sch", "1;Job; \r\n"}}, ""},
      {{{"completed.sch", "other\r\n1;JOB;"}}, "Completed"},
      {{{"error.sch", "1;job;\n"}, {"cancelled.sch", "1;Job;\r\n"}}, "Error"},
      {{{"cancelled.sch", "1;Job;\r\n"}}, "Cancelled"},
      {{{"completed.sch", "1;Job;\r\n"}, {"error.sch", "1;Job;\r\n"}}, "Completed"},
  };
  const auto dialog = window("RESPONSE DIALOG");
  link.install(*dialog);
  for (const Case& each : cases) {
    session.run.SessionStatus.clear();
    session.run.AnswerReceived = false;
    files.content.clear();
    for (const auto& [name, text] : each.files)
      files.content["S:\\" + name] = text;
    channel.post(dialog->handle(), link.SchedulerAnswerMessageId(), 0, 5);
    channel.deliver();
    EXPECT_EQ(session.run.SessionStatus, each.status);
    EXPECT_EQ(session.run.AnswerReceived, *each.status != '\0');
  }
  const base::LocalTime answered = session.run.AnsweredAt;
  clock.sleep(std::chrono::seconds(5));
  channel.post(dialog->handle(), link.SchedulerAnswerMessageId(), 0, 5);
  channel.deliver();
  EXPECT_EQ(session.run.AnsweredAt, answered) << "the first answer counts";
  files.before = [](std::string_view, const std::string& path) {
    throw base::Fault("Permission denied", path);
  };
  EXPECT_FALSE(link.JobListedIn("completed.sch"));
  EXPECT_THAT(ui.messages, IsEmpty());
  EXPECT_THAT(passed_on, IsEmpty());
}

TEST_F(LinkTest, PassesOtherMessagesOnAndPutsTheProcedureBack) {
  const auto dialog = window("RESPONSE DIALOG");
  link.install(*dialog);
  EXPECT_EQ(link.SessionWindowProc(dialog->handle(), link.RePilotMessageId(), 1, 4), 77);
  link.remove(*dialog);
  channel.post(dialog->handle(), link.SchedulerAnswerMessageId(), 0, 5);
  channel.deliver();
  EXPECT_THAT(passed_on, ElementsAre(4, 5));
}

TEST_F(LinkTest, WaitsUntilAnswerOrCancel) {
  int rounds = 0;
  session.run.AnswerReceived = true;  // came before the wait and is lost
  ui.on_pump = [&] { session.run.AnswerReceived = ui.pumps == 3; };
  link.WaitForScheduler([&] { ++rounds; });
  EXPECT_EQ(rounds, 3);
  EXPECT_EQ(clock.slept, std::chrono::milliseconds(300));
  ui.on_pump = [&] { session.run.CancelRequested = true; };
  link.WaitForScheduler();
  EXPECT_EQ(clock.slept, std::chrono::milliseconds(400));
  link.WaitForScheduler();
  EXPECT_EQ(clock.slept, std::chrono::milliseconds(400));
}

TEST(SchedulerWatch, TellsOnceOfAWindowThatStaysAway) {
  MemorySuite suite;
  Shown shown;
  RecordingView view(shown);
  SchedulerWatch watch(suite.link, suite.control, view, "Nov1526121005001");
  const auto rounds = [&](int count) {
    for (int i = 0; i < count; ++i)
      watch.round();
  };
  suite.channel.searches = 0;
  rounds(600);
  EXPECT_EQ(suite.channel.searches, 200);  // one look in three rounds of 100 ms
  suite.scheduler.window.reset();
  rounds(48);
  suite.scheduler.open();  // comes back in time
  rounds(3);
  suite.scheduler.window.reset();
  rounds(48);
  EXPECT_THAT(shown.complaints, IsEmpty());
  rounds(100);
  EXPECT_THAT(shown.complaints,
              ElementsAre("JobPilot has been gone for 5 seconds, the job Nov1526121005001 will "
                          "not be answered."));
}

TEST(SchedulerWatch, TellsOnceOfADroppedRequest) {
  MemorySuite suite;
  Shown shown;
  RecordingView view(shown);
  suite.scheduler.window.reset();
  suite.link.NotifyScheduler(protocol::SchedulerRequest::kJobsSubmitted);
  SchedulerWatch watch(suite.link, suite.control, view, "Nov1526121005001");
  for (int i = 0; i < 200; ++i)
    watch.round();
  EXPECT_THAT(shown.complaints, ElementsAre("not found"));
}

// What the scheduler tells of the job decides whether there is hope; one answer may come too early.
TEST(SchedulerWatch, EndsAWaitThatTheSchedulerLeavesNoHopeFor) {
  using protocol::JobState;
  const std::string job = "Nov1526121005001";
  const struct {
    const char* running;
    std::vector<protocol::ScheduledJob> jobs;
    std::uint64_t left_out;
    const char* sentence;  // the beginning of what is told, "" for a wait that goes on
  } cases[] = {
      {"Nov1526121005001", {}, 0, ""},
      {"", {{job, "", JobState::kWaiting}}, 0, ""},
      {"", {}, 3, ""},
      {"", {}, 0, "JobPilot does not have the job Nov1526121005001. "},
      {"", {{job, "", JobState::kFinished}}, 0, "JobPilot has ended the job Nov1526121005001, but no "},
      {"",
       {{job, "", JobState::kUnlisted, "Disk full."}},
       0,
       "JobPilot says of the job Nov1526121005001: Disk full. "},
  };
  for (const auto& each : cases) {
    MemorySuite suite;
    Shown shown;
    RecordingView view(shown);
    SchedulerWatch watch(suite.link, suite.control, view, job);
    suite.control.now.emplace();
    suite.control.now->jobs = each.jobs;
    suite.control.now->jobs_left_out = each.left_out;
    const auto rounds = [&](int count) {
      for (int i = 0; i < count; ++i)
        watch.round();
    };
    for (const std::string& running : {std::string(each.running), job, std::string(each.running)}) {
      suite.control.now->running_job = running;  // hope in between begins the count anew
      rounds(2 * SchedulerWatch::kRoundsBetweenQuestions);
      EXPECT_THAT(shown.complaints, IsEmpty());
    }
    rounds(2 * SchedulerWatch::kRoundsBetweenQuestions);
    ASSERT_EQ(shown.complaints.size(), *each.sentence == '\0' ? 0U : 1U) << each.sentence;
    EXPECT_THAT(shown.complaints, testing::Each(testing::StartsWith(each.sentence)));
  }
}

// The box of a failed session says why, and what to do next; others stay as they are.
TEST(ReasonedBoxesTest, TellWhyASessionFailedAndWhatToDo) {
  doubles::MemoryFiles files;
  doubles::MemoryMachine machine;
  const environment::FilesAndFolders folders(machine, files);
  doubles::RecordingUserInterface ui;
  base::JobValues job;
  job.Name = "Nov1526120000000";
  files.make_folders(folders.GetLogsFolder());
  std::string& log = files.content[folders.GetLogsFolder() + job.Name + ".log"];
  ReasonedBoxes boxes({ui, files, folders, job, "Edit it."});
  const auto detail = [&](const std::string& reason, platform::Message message) {
    log = reason.empty() ? "" : "2026-11-15 12:10:05 Reason: " + reason + "\r\n";
    boxes.show(message);
    return ui.messages.back().detail;
  };
  const platform::Message failed{.text = "Communication error, see JobPilot for details", .title = "ERROR"};
  struct Row {
    std::string reason;
    const char* next;
  };
  for (const Row& row : {
           Row{"Login as admin at 10.0.0.5 port 21: 530 Authentication failed.",
               "access code, then try again. Edit it."},
           Row{"Login as admin at 10.0.0.5 port 21: 421 Too many users.",
               "every step: \\Corbelin\\QVRCOM+\\Logs\\Nov1526120000000.log"},
           Row{std::string("Login as admin at 10.0.0.5 port 21: ") + device_fault::kUnreachable + ".",
               "is right, then try again. Edit it."},
           Row{std::string("Fetching log: ") + device_fault::kClosed + ", after 3 bytes.",
               "check the line to the device."},
           Row{"Selecting account part3: 530 Not now.", "Nov1526120000000.log"},
       }) {
    const std::string told = detail(row.reason, failed);
    EXPECT_THAT(told, testing::StartsWith(row.reason));
    EXPECT_THAT(told, EndsWith(row.next));
  }
  EXPECT_EQ(detail("", failed), "");
  const char* stopped = "The session was stopped in the scheduler.";
  EXPECT_EQ(detail(stopped, {.text = "Communication cancelled from JobPilot", .title = "CANCELLED"}),
            stopped);
  EXPECT_EQ(detail(stopped, {.text = "Please select a site", .title = "Information"}), "");
  EXPECT_EQ(detail(stopped, {.text = "x", .title = "ERROR", .detail = "its own"}), "its own");
}

}  // namespace
}  // namespace qvrcom::session
