#include "session/scheduler_link.h"

#include <gmock/gmock.h>

#include "base/fault.h"
#include "doubles/manual_clock.h"
#include "doubles/memory_channel.h"
#include "doubles/memory_files.h"
#include "doubles/memory_machine.h"
#include "doubles/memory_programs.h"
#include "doubles/recording_user_interface.h"

namespace qvrcom::session {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Post = doubles::MemoryChannel::Post;

struct LinkTest : ::testing::Test {
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

}  // namespace
}  // namespace qvrcom::session
