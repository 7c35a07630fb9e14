#include "session/scheduler_watch.h"

#include <gmock/gmock.h>

#include "protocol/messages.h"
#include "session/memory_suite.h"

namespace qvrcom::session {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

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
    suite.control.now->running_job = each.running;
    suite.control.now->jobs = each.jobs;
    suite.control.now->jobs_left_out = each.left_out;
    const auto rounds = [&](int count) {
      for (int i = 0; i < count; ++i)
        watch.round();
    };
    rounds(2 * SchedulerWatch::kRoundsBetweenQuestions);
    EXPECT_THAT(shown.complaints, IsEmpty());
    rounds(2 * SchedulerWatch::kRoundsBetweenQuestions);
    ASSERT_EQ(shown.complaints.size(), *each.sentence == '\0' ? 0U : 1U) << each.sentence;
    EXPECT_THAT(shown.complaints, ::testing::Each(::testing::StartsWith(each.sentence)));
  }
}

}  // namespace
}  // namespace qvrcom::session
