#include "adapters/scheduler_control_local.h"

#include <gmock/gmock.h>

#include <QLocalSocket>
#include <QTemporaryDir>
#include <QTimer>
#include <future>

#include "adapters/local_socket.h"
#include "adapters/qt_application.h"
#include "base/fault.h"
#include "doubles/manual_scheduler.h"

namespace qvrcom::adapters {
namespace {

using platform::Reach;
using platform::StopOutcome;
using protocol::JobState;

class SchedulerControlLocalTest : public testing::Test {
 protected:
  SchedulerControlLocalTest() { need_application(); }

  // The client waits for its answer, so it asks on a thread of its own while events run here.
  template <class Question>
  auto ask(Question question) {
    auto answer = std::async(std::launch::async, [&] {
      SchedulerControlLocal client(run_, run_);
      return question(client);
    });
    EXPECT_TRUE(
        pump_until([&] { return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
    return answer.get();
  }

  QTemporaryDir folder_;
  const std::string run_ = folder_.filePath("run").toStdString();
};

TEST_F(SchedulerControlLocalTest, CarriesQuestionsAndAnswers) {
  doubles::ManualScheduler scheduler;
  scheduler.now = {"0.1.0",
                   4711,
                   "JobA",
                   "Fetching \"x\"\n",
                   1ULL << 33U,
                   20000,
                   {{"JobA", "Büro; 3", JobState::kRunning},
                    {"JobB", "", JobState::kWaiting},
                    {"JobC", "", JobState::kLeftAlone},
                    {"JobD", "", JobState::kFinished},
                    {"JobE", "", JobState::kUnlisted, "It is completed. Disk full."},
                    {"", "", JobState::kDamaged, "It is damaged."}},
                   7};
  // More than a socket takes at once.
  for (int i = 0; i < 20000; ++i)
    scheduler.now->jobs.push_back({"Job" + std::to_string(i), "Retrieve", JobState::kWaiting});
  auto server = std::make_unique<SchedulerControlServer>(run_, run_, scheduler);
  EXPECT_THROW(SchedulerControlServer(run_, run_, scheduler), base::Fault);
  EXPECT_EQ(ask([](auto& client) { return client.status().status; }), scheduler.now);
  EXPECT_EQ(ask([](auto& client) { return client.stop_job("JobA"); }), StopOutcome::kTakenOut);
  scheduler.outcome = StopOutcome::kUnknownJob;
  EXPECT_EQ(ask([](auto& client) { return client.stop_job("JobX\nstop"); }), StopOutcome::kUnknownJob);
  EXPECT_THAT(scheduler.log, testing::Each(testing::StartsWith("stop Job")));
  QTimer::singleShot(300, [&] { server.reset(); });
  EXPECT_EQ(ask([](auto& client) { return client.stop(); }), Reach::kAnswered);
  EXPECT_EQ(scheduler.log.back(), "stop");
  EXPECT_EQ(server, nullptr) << "gone when the client returns";
}

TEST_F(SchedulerControlLocalTest, TellsSilenceFromAbsence) {
  const auto expect = [&](Reach reach, StopOutcome outcome) {
    EXPECT_EQ(ask([](auto& client) { return client.status().reach; }), reach);
    EXPECT_EQ(ask([](auto& client) { return client.stop(); }), reach);
    EXPECT_EQ(ask([](auto& client) { return client.stop_job("JobA"); }), outcome);
  };
  expect(Reach::kNotRunning, StopOutcome::kNotRunning);
  {
    const OwnedServer window(local_socket_path(run_, run_, "JOBPILOT"));  // another maker's
    expect(Reach::kSilent, StopOutcome::kSilent);
  }
  OwnedServer mute(local_socket_path(run_, run_, "JOBPILOT control"));
  QObject::connect(&mute.server(), &QLocalServer::newConnection,
                   [&] { delete mute.server().nextPendingConnection(); });
  expect(Reach::kSilent, StopOutcome::kSilent);
}

TEST_F(SchedulerControlLocalTest, HangsUpOnWhatIsNoRequest) {
  doubles::ManualScheduler scheduler;
  const SchedulerControlServer server(run_, run_, scheduler);
  for (const QByteArray& bytes :
       {QByteArray("dance\n"), QByteArray(5000, 's'), QByteArray(5000, 's') + "\nstop\n"}) {
    QLocalSocket peer;
    peer.connectToServer(local_socket_path(run_, run_, "JOBPILOT control"));
    ASSERT_TRUE(peer.waitForConnected(1000));
    peer.write(bytes);
    EXPECT_TRUE(pump_until([&] { return peer.state() == QLocalSocket::UnconnectedState; }, 2000));
  }
  EXPECT_THAT(scheduler.log, testing::IsEmpty());
}

}  // namespace
}  // namespace qvrcom::adapters
