#include "adapters/terminal_relay_local.h"

#include <linux/sockios.h>
#include <sys/ioctl.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QNetworkProxy>
#include <QTcpSocket>
#include <QTimer>
#include <deque>
#include <mutex>
#include <optional>

#include "adapters/local_socket.h"
#include "adapters/relay_terminal.h"
#include "adapters/telnet_protocol.h"
#include "protocol/terminal_frame.h"

namespace qvrcom::adapters {
namespace {

using base::Fault;
using platform::TerminalEnd;
using platform::TerminalStage;
using std::chrono::milliseconds;

constexpr qint64 kMostWaiting = 65536;  // bytes, each way; then nothing more is read on the other side
constexpr qint64 kPiece = 8192;         // bytes of one read
constexpr int kFarewellLimit = 2000;    // milliseconds for the last bytes
constexpr int kCutLimit = 200;          // the same when the session was cut off
constexpr int kCountTime = 50;          // milliseconds between two looks at what has arrived

// The end of a session: how it went, or what went wrong.
struct Ending {
  TerminalEnd end = TerminalEnd::kLeft;
  std::optional<Fault> fault;
};

std::string seconds_text(milliseconds time) {
  return std::to_string(time.count() / 1000) + " s";
}

// One session, on the thread that made it, while that thread runs its events.
class RelayedSession : public QObject {
 public:
  RelayedSession(const platform::TerminalOrder& order, const QString& socket_path,
                 const std::function<void(TerminalStage)>& reached,
                 const platform::TransferProgress& progress)
      : order_(order),
        reached_(reached),
        progress_(progress),
        terminal_(socket_path, order.job_name,
                  {[this] { settle_terminal(); }, [this] { read_on(); }, [this] { terminal_left(); }}),
        telnet_({[this](std::string_view bytes) { to_device(bytes); },
                 [this](std::string_view bytes) { to_terminal(bytes); }, [this](bool on) { echo(on); }}) {
    watch_device();
    watch_limits();
  }

  platform::TerminalTraffic run() {
    limit_.start(order_.limits.connect);
    device_.connectToHost(QString::fromStdString(order_.host), order_.port);
    if (!ending_) loop_.exec();
    farewell();
    if (ending_->fault) throw Fault(ending_->fault->description(), ending_->fault->detail() + traffic_text());
    return {ending_->end, from_device_, to_device_};
  }

  // The first ending counts.
  void end(Ending ending) {
    if (!ending_) ending_ = std::move(ending);
    loop_.quit();
  }
  void end_with(const std::string& what, const std::string& detail = {}) {
    end({TerminalEnd::kHungUp, Fault(what, detail.empty() ? tried() : tried() + ". " + detail)});
  }

 private:
  std::string tried() const {
    return "Telnet session with " + order_.host + " port " + std::to_string(order_.port);
  }
  bool open() const { return !ending_; }

  void watch_device() {
    device_.setProxy(QNetworkProxy::NoProxy);
    device_.setReadBufferSize(kMostWaiting);
    connect(&device_, &QTcpSocket::connected, this, [this] { connected(); });
    connect(&device_, &QTcpSocket::readyRead, this, [this] { read_device(); });
    connect(&device_, &QTcpSocket::bytesWritten, this, [this] {
      moved();
      count();
      read_on();
    });
    count_.setInterval(kCountTime);
    connect(&count_, &QTimer::timeout, this, [this] { count(); });
    connect(&device_, &QTcpSocket::disconnected, this, [this] { device_gone(); });
    connect(&device_, &QTcpSocket::errorOccurred, this, [this](QAbstractSocket::SocketError error) {
      if (error != QAbstractSocket::RemoteHostClosedError) end_with(device_.errorString().toStdString());
    });
  }

  void watch_limits() {
    for (QTimer* timer : {&limit_, &session_, &idle_})
      timer->setSingleShot(true);
    connect(&limit_, &QTimer::timeout, this, [this] { first_limit_reached(); });
    connect(&session_, &QTimer::timeout, this,
            [this] { end_with("The session took longer than " + seconds_text(order_.limits.session)); });
    connect(&idle_, &QTimer::timeout, this, [this] {
      end_with(std::string(platform::device_fault::kSilence) + " for " + seconds_text(order_.limits.idle));
    });
  }

  void first_limit_reached() {
    if (connected_)
      end_with("No terminal attached within " + seconds_text(order_.limits.attach));
    else
      end_with(std::string(platform::device_fault::kNoAnswer) + " within " +
               seconds_text(order_.limits.connect));
  }

  void connected() {
    connected_ = true;
    device_.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    device_.setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    session_.start(order_.limits.session);
    reached_(TerminalStage::kConnected);
    limit_.start(order_.limits.attach);
    settle_terminal();
  }

  // What the device says while nobody listens is kept, up to the limit.
  void read_device() {
    while (open() && device_.bytesAvailable() > 0 && device_.bytesToWrite() < kMostWaiting &&
           terminal_.backlog() < kMostWaiting)
      take_from_device();
  }

  void take_from_device() {
    const QByteArray bytes = device_.read(kPiece);
    moved();
    // Thrown on inside a signal it would end the program.
    const auto fault = base::fault_of([&] {
      telnet_.received({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    });
    if (fault) end_with(fault->description(), fault->detail());
  }

  void device_gone() {
    while (open() && device_.bytesAvailable() > 0)
      take_from_device();
    if (attached_ || !open()) return end({TerminalEnd::kHungUp, {}});
    end_with(std::string(platform::device_fault::kClosed) + " before a terminal had attached");
  }

  void to_device(std::string_view bytes) {
    written_ += bytes.size();
    device_.write(bytes.data(), static_cast<qint64>(bytes.size()));
  }

  // Tells the terminal how much of what it sent has reached the device, as far as the machine knows; once the
  // line is closed it knows no more.
  void count() {
    int queued = 0;
    const qintptr line = device_.socketDescriptor();
    if (line < 0 || ::ioctl(static_cast<int>(line), SIOCOUTQ, &queued) != 0) return;
    const std::uint64_t arrived =
        written_ - static_cast<std::uint64_t>(device_.bytesToWrite()) - static_cast<std::uint64_t>(queued);
    const std::uint64_t before = arrived_;
    for (; !on_the_way_.empty() && on_the_way_.front().written <= arrived; on_the_way_.pop_front())
      arrived_ = on_the_way_.front().typed;
    on_the_way_.empty() ? count_.stop() : count_.start();
    if (arrived_ != before)
      terminal_.say(protocol::terminal_frame_text(protocol::kTerminalCount, std::to_string(arrived_)));
  }

  std::string traffic_text() const {
    if (to_device_ == 0) return {};
    return ". Of " + std::to_string(to_device_) + " bytes from the terminal " + std::to_string(arrived_) +
           " went to the device, " + std::to_string(to_device_ - arrived_) + " did not";
  }

  void to_terminal(std::string_view bytes) {
    from_device_ += bytes.size();
    progress_(from_device_);
    terminal_.say(protocol::terminal_data_text(bytes));
  }

  void echo(bool on) {
    terminal_.say(protocol::terminal_frame_text(protocol::kTerminalEcho, on ? "1" : "0"));
  }

  void moved() {
    if (attached_) idle_.start(order_.limits.idle);
  }

  void read_on() {
    read_device();
    read_terminal();
  }

  // Once there are both a device and a terminal.
  void settle_terminal() {
    if (!connected_ || !terminal_.here() || attached_) return;
    limit_.stop();
    attached_ = true;
    moved();
    reached_(TerminalStage::kAttached);
    terminal_.attach();
    read_on();
  }

  void terminal_left() {
    read_terminal();
    end({TerminalEnd::kLeft, {}});
  }

  void read_terminal() {
    while (open() && attached_ && device_.bytesToWrite() < kMostWaiting && terminal_.read()) {
      for (auto frame = terminal_.next(); frame && open(); frame = terminal_.next())
        obey(*frame);
      if (terminal_.damaged()) end_with("The terminal does not keep to the protocol");
    }
  }

  void obey(const protocol::TerminalFrame& frame) {
    const auto number = [&](std::size_t at) {
      const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(frame.payload[i]); };
      return static_cast<std::uint16_t>((byte(at) << 8U) | byte(at + 1));
    };
    moved();
    if (frame.kind == protocol::kTerminalData) {
      to_device_ += frame.payload.size();
      telnet_.typed(frame.payload);
      on_the_way_.push_back({written_, to_device_});
      count();
    } else if (frame.kind == protocol::kTerminalWindow && frame.payload.size() == 4) {
      telnet_.resized(number(0), number(2));
    } else if (frame.kind == protocol::kTerminalEnd) {
      end({TerminalEnd::kLeft, {}});
    }
  }

  // The last bytes go to whom they belong, and the terminal hears why it ended.
  void farewell() {
    count();
    count_.stop();
    disconnect(&device_, nullptr, this, nullptr);
    const int limit = ending_->fault ? kCutLimit : kFarewellLimit;
    terminal_.dismiss(ending_->fault ? ending_->fault->description() + "." : "The Telnet session has ended.",
                      limit);
    if (!connected_) return device_.abort();
    device_.disconnectFromHost();
    if (device_.state() != QAbstractSocket::UnconnectedState) device_.waitForDisconnected(limit);
  }

  const platform::TerminalOrder& order_;
  const std::function<void(TerminalStage)>& reached_;
  const platform::TransferProgress& progress_;
  QEventLoop loop_;
  QTcpSocket device_;
  RelayTerminal terminal_;
  QTimer limit_;  // for connecting, then for the terminal
  QTimer session_;
  QTimer idle_;
  TelnetProtocol telnet_;
  bool connected_ = false;
  bool attached_ = false;
  std::uint64_t from_device_ = 0;
  std::uint64_t to_device_ = 0;

  // What was typed, counted in its own bytes and in those that it became on the line.
  struct OnTheWay {
    std::uint64_t written;
    std::uint64_t typed;
  };
  std::deque<OnTheWay> on_the_way_;
  std::uint64_t written_ = 0;  // bytes given to the line
  std::uint64_t arrived_ = 0;  // how many of `to_device_` the device has
  QTimer count_;
  std::optional<Ending> ending_;
};

class TerminalRelayLocal : public platform::TerminalRelay {
 public:
  TerminalRelayLocal(QString socket_path, platform::TransferProgress progress)
      : socket_path_(std::move(socket_path)), progress_(std::move(progress)) {}

  platform::TerminalTraffic hold(const platform::TerminalOrder& order,
                                 const std::function<void(TerminalStage)>& reached) override {
    struct Sweep {  // what the session leaves to this thread's events to delete
      ~Sweep() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
    };
    const Sweep sweep;
    RelayedSession session(order, socket_path_, reached, progress_);
    const Running running(*this, session);
    return session.run();
  }

  void cancel() override {
    const std::lock_guard lock(mutex_);
    cancelled_ = true;
    if (session_ != nullptr) end_soon(*session_);
  }

 private:
  // The session stands here for as long as it may be cancelled.
  class Running {
   public:
    Running(TerminalRelayLocal& relay, RelayedSession& session) : relay_(relay) {
      const std::lock_guard lock(relay.mutex_);
      relay.session_ = &session;
      if (relay.cancelled_) end_soon(session);
    }
    ~Running() {
      const std::lock_guard lock(relay_.mutex_);
      relay_.session_ = nullptr;
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

   private:
    TerminalRelayLocal& relay_;
  };

  static void end_soon(RelayedSession& session) {
    QMetaObject::invokeMethod(
        &session, [&session] { session.end_with("The session was stopped in the scheduler"); },
        Qt::QueuedConnection);
  }

  const QString socket_path_;
  const platform::TransferProgress progress_;
  std::mutex mutex_;
  RelayedSession* session_ = nullptr;  // under the mutex
  bool cancelled_ = false;             // likewise
};

}  // namespace

std::unique_ptr<platform::TerminalRelay> TerminalRelaysLocal::make(platform::TransferProgress progress) {
  return std::make_unique<TerminalRelayLocal>(
      local_socket_path(run_folder_, runtime_folder_, kTerminalSocketName), std::move(progress));
}

}  // namespace qvrcom::adapters
