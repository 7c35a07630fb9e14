#include "adapters/terminal_local.h"

#include <gmock/gmock.h>

#include <QLocalSocket>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <future>

#include "adapters/local_socket.h"
#include "adapters/qt_application.h"
#include "adapters/terminal_relay_local.h"
#include "doubles/caught.h"
#include "protocol/terminal_frame.h"

namespace qvrcom::adapters {
namespace {

using namespace std::chrono_literals;
using platform::TerminalEnd;
using platform::TerminalStage;
using testing::HasSubstr;

// A user in front of a terminal.
struct User {
  explicit User(const std::string& run) : terminal(run, run) {}
  void attach(const std::string& job) {
    terminal.attach(job, {[this] { attached = true; }, [this](std::string_view bytes) { seen += bytes; },
                          [this](bool on) { echo = on; }, [this](const std::string& text) { why = text; }});
  }
  TerminalLocal terminal;
  bool attached = false;
  bool echo = false;
  std::string seen;
  std::string why;
};

// A relay on a thread of its own, as a session holds it, and the device that it reaches.
class TerminalLocalTest : public testing::Test {
 protected:
  TerminalLocalTest() {
    need_application();
    device_.listen(QHostAddress::LocalHost);
    QObject::connect(&device_, &QTcpServer::newConnection, &device_,
                     [this] { line_ = device_.nextPendingConnection(); });
    order_ = {"JobA", "127.0.0.1", device_.serverPort(), {}};
  }
  ~TerminalLocalTest() override {
    if (relay_) relay_->cancel();
    if (held_.valid()) pump_until([this] { return over(); });
  }

  void hold() {
    relay_ = TerminalRelaysLocal(run_, run_).make([this](std::uint64_t bytes) { progress_ = bytes; });
    held_ = std::async(std::launch::async, [this] {
      return relay_->hold(order_, [this](TerminalStage stage) { stage_ = static_cast<int>(stage); });
    });
  }
  bool over() const { return held_.wait_for(0s) == std::future_status::ready; }
  void wait_for_end() {
    ASSERT_TRUE(pump_until([this] { return over(); }));
  }

  // Why the session failed.
  std::string failure() {
    EXPECT_TRUE(pump_until([this] { return over(); }));
    return doubles::fault_of([this] { held_.get(); });
  }
  void attach_user() {
    hold();
    user_.attach("JobA");
    ASSERT_TRUE(pump_until([this] { return user_.attached && line_ != nullptr; }));
  }

  QTemporaryDir folder_;
  const std::string run_ = folder_.filePath("run").toStdString();
  QTcpServer device_;
  QTcpSocket* line_ = nullptr;
  platform::TerminalOrder order_;
  std::unique_ptr<platform::TerminalRelay> relay_;
  std::future<platform::TerminalTraffic> held_;
  std::atomic<std::uint64_t> progress_{0};
  std::atomic<int> stage_{-1};
  User user_{run_};
};

TEST_F(TerminalLocalTest, RelaysUntilTheUserLeaves) {
  user_.attach("JobA");  // before there is a session
  user_.terminal.resize(100, 30);
  pump_until([] { return false; }, 150);
  hold();
  ASSERT_TRUE(pump_until([this] { return line_ != nullptr; }));
  line_->write(QByteArray("\xFF\xFB\x01Hello", 8));
  ASSERT_TRUE(pump_until([this] { return user_.seen == "Hello"; }));
  EXPECT_TRUE(user_.attached);
  EXPECT_TRUE(user_.echo);
  EXPECT_EQ(stage_, static_cast<int>(TerminalStage::kAttached));

  // More than the sockets and every buffer take at once, both ways.
  const std::string much(3'000'000, 'm');
  line_->write(much.data(), static_cast<qint64>(much.size()));
  user_.terminal.send(much);
  QByteArray heard;
  EXPECT_TRUE(pump_until([&] {
    heard += line_->readAll();
    return user_.seen.size() == 5 + much.size() && heard.size() == 3 + static_cast<qsizetype>(much.size());
  }));
  EXPECT_EQ(user_.seen, "Hello" + much);
  EXPECT_EQ(heard.mid(3), QByteArray::fromStdString(much));
  EXPECT_EQ(progress_, 5 + much.size());

  user_.terminal.send("last\r");
  user_.terminal.leave();
  wait_for_end();
  const platform::TerminalTraffic traffic = held_.get();
  EXPECT_EQ(traffic.end, TerminalEnd::kLeft);
  EXPECT_EQ(traffic.to_device, much.size() + 5);
  EXPECT_TRUE(pump_until([this] { return line_->bytesAvailable() == 6; })) << "what was typed last arrives";
  EXPECT_EQ(user_.why, "") << "who leaves hears no end";
}

TEST_F(TerminalLocalTest, TheDeviceEndsIt) {
  attach_user();
  line_->write(std::string(200'000, 'b').data(), 200'000);
  line_->disconnectFromHost();
  wait_for_end();
  EXPECT_EQ(held_.get().end, TerminalEnd::kHungUp);
  EXPECT_TRUE(pump_until([this] { return !user_.why.empty(); }));
  EXPECT_EQ(user_.seen.size(), 200'000U);
  EXPECT_EQ(user_.why, "The Telnet session has ended.");
}

TEST_F(TerminalLocalTest, OneTerminalForOneJob) {
  attach_user();
  User second(run_);
  second.attach("JobA");
  User other(run_);
  other.attach("JobB");
  EXPECT_TRUE(pump_until([&] { return !second.why.empty(); }));
  EXPECT_EQ(second.why, "Another terminal has attached already.");
  pump_until([] { return false; }, 300);
  EXPECT_FALSE(other.attached);
  EXPECT_EQ(other.why, "") << "its session may come yet";
  EXPECT_FALSE(over());
}

TEST_F(TerminalLocalTest, FailuresAreSaid) {
  order_.limits.attach = 50ms;
  hold();
  EXPECT_THAT(failure(), HasSubstr("No terminal attached within"));

  order_.limits = {};
  order_.limits.idle = 100ms;
  attach_user();
  EXPECT_THAT(failure(), HasSubstr("No byte came or went for"));
  EXPECT_TRUE(pump_until([this] { return !user_.why.empty(); }));
  EXPECT_THAT(user_.why, HasSubstr("No byte came or went for"));

  order_.limits = {};
  line_ = nullptr;
  hold();
  ASSERT_TRUE(pump_until([this] { return line_ != nullptr; }));
  line_->disconnectFromHost();
  EXPECT_EQ(failure(), "The device closed the connection before a terminal had attached");

  device_.close();
  hold();
  EXPECT_EQ(failure(), "Connection refused");
}

TEST_F(TerminalLocalTest, ACutSaysHowMuchWent) {
  attach_user();
  line_->setReadBufferSize(1000);  // the device takes a little and then no more
  const std::string much(20'000'000, 'm');
  user_.terminal.send(much);
  const auto went = [&] { return much.size() - user_.terminal.unsent(); };
  ASSERT_TRUE(pump_until([&] { return went() > 0; }));
  relay_->cancel();
  const std::string whole = doubles::whole_fault_of([this] {
    pump_until([this] { return over(); });
    held_.get();
  });
  EXPECT_TRUE(pump_until([this] { return !user_.why.empty(); }));
  EXPECT_LT(went(), much.size());
  EXPECT_THAT(whole, HasSubstr(" " + std::to_string(went()) + " went to the device, "));
  line_->setReadBufferSize(0);
  QByteArray heard;
  pump_until([&] {
    heard += line_->readAll();
    return line_->state() == QAbstractSocket::UnconnectedState;
  });
  EXPECT_GE(static_cast<std::size_t>(heard.size()), went());
}

TEST_F(TerminalLocalTest, ACancelEndsItAtOnce) {
  attach_user();
  relay_->cancel();
  EXPECT_EQ(failure(), "The session was stopped in the scheduler");
  const auto relay = TerminalRelaysLocal(run_, run_).make({});
  relay->cancel();
  EXPECT_THROW(relay->hold(order_, [](TerminalStage) {}), base::Fault);
}

TEST_F(TerminalLocalTest, HangsUpOnStrangers) {
  hold();
  ASSERT_TRUE(pump_until([this] { return line_ != nullptr; }));
  QLocalSocket peer;
  peer.connectToServer(local_socket_path(run_, run_, kTerminalSocketName));
  peer.write(QByteArray(5000, '\xFF'));
  EXPECT_TRUE(pump_until([&] { return peer.state() == QLocalSocket::UnconnectedState; }, 1500));
  EXPECT_FALSE(over());

  QLocalSocket terminal;
  terminal.connectToServer(local_socket_path(run_, run_, kTerminalSocketName));
  const std::string hello = protocol::terminal_frame_text(protocol::kTerminalAttach, "JobA");
  terminal.write(QByteArray::fromStdString(hello + "D\xFF\xFF"));
  EXPECT_EQ(failure(), "The terminal does not keep to the protocol");
}

TEST_F(TerminalLocalTest, AnEventMayDoAwayWithTheTerminal) {
  auto terminal = std::make_unique<TerminalLocal>(run_, run_);
  terminal->attach("JobA", {[&] { terminal.reset(); }, {}, {}, {}});
  hold();
  wait_for_end();
  EXPECT_EQ(terminal, nullptr);
  EXPECT_EQ(held_.get().end, TerminalEnd::kLeft);
}

}  // namespace
}  // namespace qvrcom::adapters
