#include <gmock/gmock.h>
#include <sys/stat.h>

#include <QLocalSocket>
#include <QTemporaryDir>
#include <QTimer>
#include <future>

#include "adapters/local_socket.h"
#include "adapters/message_channel_local.h"
#include "adapters/qt_application.h"
#include "adapters/scheduler_control_local.h"
#include "base/fault.h"
#include "doubles/manual_scheduler.h"

namespace qvrcom::adapters {
namespace {

using platform::MessageId;
using platform::Reach;
using platform::StopOutcome;
using platform::WindowHandle;
using protocol::JobState;
using testing::ElementsAre;

struct Arrived {
  WindowHandle window;
  std::string message;
  std::uint64_t word;
  std::int64_t value;
  bool operator==(const Arrived&) const = default;
};

class MessageChannelLocalTest : public testing::Test {
 protected:
  MessageChannelLocalTest() { need_application(); }

  // Opens a window that notes what arrives; messages bear the names "A" and "B".
  std::unique_ptr<platform::Window> open(MessageChannelLocal& channel, const std::string& title) {
    const MessageId a = channel.register_message("A");
    return channel.open_window(
        title, [this, a](WindowHandle window, MessageId id, std::uint64_t word, std::int64_t value) {
          arrived_.push_back({window, id == a ? "A" : "other", word, value});
          return std::int64_t{0};
        });
  }
  bool opens(MessageChannelLocal& channel, const std::string& title) {
    try {
      open(channel, title);
      return true;
    } catch (const base::Fault&) {
      return false;
    }
  }
  void send_raw(const std::string& title, const QByteArray& bytes) const {
    QLocalSocket peer;
    peer.connectToServer(local_socket_path(run_, runtime_, title));
    ASSERT_TRUE(peer.waitForConnected(1000));
    peer.write(bytes);
    peer.waitForBytesWritten(1000);
  }

  QTemporaryDir folder_;
  const std::string run_ = folder_.filePath("run").toStdString();
  const std::string runtime_ = folder_.filePath("runtime").toStdString();
  MessageChannelLocal here_{run_, runtime_};
  MessageChannelLocal there_{run_, runtime_};
  std::vector<Arrived> arrived_;
};

TEST_F(MessageChannelLocalTest, BringsMessagesInTheirOrder) {
  EXPECT_EQ(there_.find_window("RESPONSE DIALOG"), 0U);
  const auto window = open(here_, "RESPONSE DIALOG");
  const WindowHandle found = there_.find_window("RESPONSE DIALOG");
  ASSERT_NE(found, 0U);
  const MessageId b = there_.register_message("B");  // numbers differ from program to program, names do not
  const MessageId a = there_.register_message("A");
  EXPECT_EQ(there_.register_message("A"), a);
  there_.post(found, a, 0, 1);
  there_.post(found, a, 7, -2);
  there_.post(found, b, 0, 9);
  there_.post(0, a, 0, 3);
  EXPECT_TRUE(arrived_.empty()) << "before events are pumped";
  ASSERT_TRUE(pump_until([this] { return arrived_.size() == 3; }));
  EXPECT_THAT(arrived_,
              ElementsAre(Arrived{window->handle(), "A", 0, 1}, Arrived{window->handle(), "A", 7, -2},
                          Arrived{window->handle(), "other", 0, 9}));
}

TEST_F(MessageChannelLocalTest, ATitleHasOneOwnerAndComesBackFree) {
  auto window = open(here_, "JOBPILOT");
  EXPECT_FALSE(opens(there_, "JOBPILOT"));
  EXPECT_TRUE(opens(there_, "REPILOT"));
  ASSERT_NE(there_.find_window("JOBPILOT"), 0U) << "the refused one must not have taken it over";
  window.reset();
  EXPECT_EQ(there_.find_window("JOBPILOT"), 0U);
  EXPECT_TRUE(opens(there_, "JOBPILOT"));
  struct stat status {};
  stat(run_.c_str(), &status);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);
}

TEST_F(MessageChannelLocalTest, DropsWhatIsNoMessage) {
  const auto window = open(here_, "JOBPILOT");
  std::vector<QByteArray> bad{QByteArray(1000, 'x') + " 0 1\n"};
  for (const char* line : {"\n", "A\n", "A 0\n", "A 0 1 2\n", "A x 1\n", "A 0 1 \n", " A 0 1\n",
                           "A 0 2147483648\n", "A -1 1\n", "\xFF 0 1\n"})
    bad.emplace_back(line);
  for (const QByteArray& line : bad)
    send_raw("JOBPILOT", line);
  send_raw("JOBPILOT", "A 0 1");  // no line end, then gone
  send_raw("JOBPILOT", "A 1 -1\nA 2 5\n");
  ASSERT_TRUE(pump_until([this] { return arrived_.size() == 2; }));
  ASSERT_TRUE(pump_until([&] { return here_.dropped() >= bad.size(); }));
  EXPECT_EQ(here_.dropped(), bad.size());
  EXPECT_EQ(arrived_[1].value, 5);
}

TEST_F(MessageChannelLocalTest, AProcedureMayCloseItsWindowOrBeReplaced) {
  std::unique_ptr<platform::Window> window;
  int calls = 0;
  window = here_.open_window("RESPONSE DIALOG", [&](auto...) {
    ++calls;
    window.reset();
    return std::int64_t{0};
  });
  send_raw("RESPONSE DIALOG", "A 0 1\nA 0 2\n");
  ASSERT_TRUE(pump_until([&] { return calls == 1; }));
  EXPECT_FALSE(pump_until([&] { return calls > 1; }, 50));

  window = open(here_, "RESPONSE DIALOG");
  const auto saved = window->replace_procedure({});
  send_raw("RESPONSE DIALOG", "A 0 1\n");
  EXPECT_FALSE(pump_until([&] { return !arrived_.empty(); }, 50));
  window->replace_procedure(saved);
  send_raw("RESPONSE DIALOG", "A 0 1\n");
  EXPECT_TRUE(pump_until([&] { return !arrived_.empty(); }));
}

TEST_F(MessageChannelLocalTest, AFolderThatIsTooDeepMovesTheSocket) {
  const std::string deep = run_ + "/" + std::string(120, 'd');
  MessageChannelLocal one(deep, runtime_);
  MessageChannelLocal two(deep, runtime_);
  const auto window = open(one, "JOBPILOT");
  EXPECT_NE(two.find_window("JOBPILOT"), 0U);
  EXPECT_EQ(MessageChannelLocal(deep + "x", runtime_).find_window("JOBPILOT"), 0U) << "another root";
}

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
