#include "adapters/terminal_local.h"

#include <QLocalSocket>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "adapters/local_socket.h"
#include "adapters/terminal_relay_local.h"
#include "protocol/terminal_frame.h"

namespace qvrcom::adapters {
namespace {

constexpr int kRetryTime = 100;      // milliseconds between two looks for the session
constexpr qint64 kMostRead = 65536;  // bytes that wait to be shown

QByteArray frame_bytes(char kind, std::string_view payload) {
  const std::string text = protocol::terminal_frame_text(kind, payload);
  return {text.data(), static_cast<qsizetype>(text.size())};
}

}  // namespace

class TerminalLocal::Wire : public QObject {
 public:
  explicit Wire(QString path) : path_(std::move(path)), socket_(this), retry_(this) {
    socket_.setReadBufferSize(kMostRead);
    retry_.setSingleShot(true);
    connect(&retry_, &QTimer::timeout, this, [this] { look(); });
    connect(&socket_, &QLocalSocket::connected, this, [this] { greet(); });
    connect(&socket_, &QLocalSocket::readyRead, this, [this] { read(); });
    // A look that failed and a session that went over both end here.
    connect(&socket_, &QLocalSocket::stateChanged, this, [this](QLocalSocket::LocalSocketState state) {
      if (state == QLocalSocket::UnconnectedState) lost();
    });
  }

  void attach(const std::string& job_name, platform::TerminalEvents events) {
    job_name_ = job_name;
    sent_ = 0;
    gone_ = 0;
    events_ = std::move(events);
    wanted_ = true;
    retry_.start(0);
  }

  void send(std::string_view bytes) {
    if (!attached_) return;
    sent_ += bytes.size();
    const std::string text = protocol::terminal_data_text(bytes);
    socket_.write(text.data(), static_cast<qint64>(text.size()));
  }

  std::size_t unsent() const { return sent_ - gone_; }

  void resize(std::uint16_t columns, std::uint16_t rows) {
    const auto byte = [](unsigned value) { return static_cast<char>(value & 0xFFU); };
    window_ = {byte(columns >> 8U), byte(columns), byte(rows >> 8U), byte(rows)};
    if (attached_) socket_.write(frame_bytes(protocol::kTerminalWindow, window_));
  }

  void leave() {
    const bool attached = std::exchange(attached_, false);
    wanted_ = false;
    events_ = {};
    retry_.stop();
    if (attached) socket_.write(frame_bytes(protocol::kTerminalEnd, {}));
    socket_.flush();
    socket_.disconnectFromServer();
  }

 private:
  void look() {
    if (wanted_ && socket_.state() == QLocalSocket::UnconnectedState) socket_.connectToServer(path_);
  }

  void greet() {
    frames_ = {};
    socket_.write(frame_bytes(protocol::kTerminalAttach, job_name_));
  }

  void read() {
    const QPointer<Wire> alive(this);
    const QByteArray bytes = socket_.readAll();
    frames_.add({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    while (alive && wanted_) {
      const auto frame = frames_.next();
      if (!frame) break;
      hear(*frame);
    }
    if (alive && wanted_ && frames_.damaged()) finish("The scheduler sent what no terminal understands.");
  }

  void hear(const protocol::TerminalFrame& frame) {
    const platform::TerminalEvents& events = events_;
    switch (frame.kind) {
      case protocol::kTerminalAttach:
        attached_ = true;
        if (!window_.empty()) socket_.write(frame_bytes(protocol::kTerminalWindow, window_));
        return tell(events.attached);
      case protocol::kTerminalData:
        return tell(events.output, std::string_view(frame.payload));
      case protocol::kTerminalEcho:
        return tell(events.echo, frame.payload == "1");
      case protocol::kTerminalCount:
        return count(frame.payload);
      case protocol::kTerminalTaken:
      case protocol::kTerminalEnd:
        return finish(frame.payload);
      default:
        return;  // another job's session: the socket closes, and is looked for again
    }
  }

  void count(const std::string& digits) {
    std::size_t gone = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), gone);
    gone_ = std::min(gone, sent_);
  }

  // The function may do away with the one it is called from.
  template <class Function, class... Arguments>
  static void tell(Function function, const Arguments&... arguments) {
    if (function) function(arguments...);
  }

  void finish(const std::string& why) {
    const auto ended = events_.ended;
    attached_ = false;
    leave();
    tell(ended, why);
  }

  void lost() {
    if (!wanted_) return;
    if (attached_) return finish("The scheduler went away.");
    retry_.start(kRetryTime);
  }

  const QString path_;
  QLocalSocket socket_;
  QTimer retry_;
  platform::TerminalEvents events_;
  protocol::TerminalFrameReader frames_;
  std::string job_name_;
  std::string window_;    // the payload that tells its size; "" while nobody did
  std::size_t sent_ = 0;  // bytes typed
  std::size_t gone_ = 0;  // how many of them the device has
  bool wanted_ = false;
  bool attached_ = false;
};

TerminalLocal::TerminalLocal(std::string run_folder, std::string runtime_folder)
    : wire_(new Wire(local_socket_path(run_folder, runtime_folder, kTerminalSocketName))) {}

TerminalLocal::~TerminalLocal() {
  wire_->leave();
  wire_->deleteLater();
}

void TerminalLocal::attach(const std::string& job_name, platform::TerminalEvents events) {
  wire_->attach(job_name, std::move(events));
}

void TerminalLocal::send(std::string_view bytes) {
  wire_->send(bytes);
}

std::size_t TerminalLocal::unsent() const {
  return wire_->unsent();
}

void TerminalLocal::resize(std::uint16_t columns, std::uint16_t rows) {
  wire_->resize(columns, rows);
}

void TerminalLocal::leave() {
  wire_->leave();
}

}  // namespace qvrcom::adapters
