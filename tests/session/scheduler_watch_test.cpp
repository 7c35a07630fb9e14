#include "session/scheduler_watch.h"

#include <gmock/gmock.h>

#include "session/memory_suite.h"

namespace qvrcom::session {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(SchedulerWatch, TellsOnceOfAWindowThatStaysAway) {
  MemorySuite suite;
  Shown shown;
  RecordingView view(shown);
  SchedulerWatch watch(suite.link, view, "Nov1526121005001");
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
  suite.link.NotifyScheduler(link::SchedulerRequest::kJobsSubmitted);
  SchedulerWatch watch(suite.link, view, "Nov1526121005001");
  for (int i = 0; i < 200; ++i)
    watch.round();
  EXPECT_THAT(shown.complaints, ElementsAre("not found"));
}

}  // namespace
}  // namespace qvrcom::session
