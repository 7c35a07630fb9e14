#include "adapters/message_channel_local.h"

#include <QLocalSocket>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <vector>

#include "adapters/local_socket.h"
#include "protocol/message_line.h"

namespace qvrcom::adapters {

using platform::MessageId;
using platform::WindowHandle;
using platform::WindowProcedure;

namespace {

constexpr qsizetype kLongestLine = protocol::kMessageLineLimit;
constexpr int kConnectLimit = 200;        // milliseconds
constexpr int kTalkLimit = 2000;          // milliseconds that a peer may keep a connection
constexpr std::size_t kMostNames = 1024;  // a stranger cannot make the table grow without end

// A number for each text, the same for the same text, from 1 up.
class Numbering {
 public:
  // 0 when the table is full.
  std::size_t number_of(const std::string& text) {
    const auto found = std::find(texts_.begin(), texts_.end(), text);
    if (found == texts_.end() && texts_.size() >= kMostNames) return 0;
    if (found != texts_.end()) return static_cast<std::size_t>(found - texts_.begin()) + 1;
    texts_.push_back(text);
    return texts_.size();
  }
  const std::string* text_of(std::size_t number) const {
    return number == 0 || number > texts_.size() ? nullptr : &texts_[number - 1];
  }

 private:
  std::vector<std::string> texts_;
};

}  // namespace

struct MessageChannelLocal::Names {
  Numbering messages;
  Numbering titles;
  std::uint64_t dropped = 0;
};

class MessageChannelLocal::LocalWindow : public platform::Window {
 public:
  LocalWindow(const QString& path, WindowHandle handle, std::shared_ptr<Names> names,
              WindowProcedure procedure)
      : owned_(path), state_(std::make_shared<State>(State{handle, std::move(names), std::move(procedure)})) {
    QLocalServer& server = owned_.server();
    QObject::connect(&server, &QLocalServer::newConnection, &server, [&server, state = state_] {
      while (QLocalSocket* peer = server.nextPendingConnection())
        welcome(peer, state);
    });
  }
  ~LocalWindow() override { state_->open = false; }

  WindowHandle handle() const override { return state_->handle; }
  WindowProcedure replace_procedure(WindowProcedure procedure) override {
    return std::exchange(state_->procedure, std::move(procedure));
  }

 private:
  // Outlives the window while a message is being delivered: its procedure may close the window.
  struct State {
    WindowHandle handle;
    std::shared_ptr<Names> names;
    WindowProcedure procedure;
    bool open = true;
  };

  static void welcome(QLocalSocket* peer, const std::shared_ptr<State>& state) {
    peer->setReadBufferSize(4 * kLongestLine);
    QObject::connect(peer, &QLocalSocket::readyRead, peer, [peer, state] { read_lines(peer, state); });
    QObject::connect(peer, &QLocalSocket::disconnected, peer, &QObject::deleteLater);
    QTimer::singleShot(kTalkLimit, peer, [peer] { peer->abort(); });
    read_lines(peer, state);
    if (peer->state() == QLocalSocket::UnconnectedState) peer->deleteLater();
  }

  static void read_lines(QLocalSocket* peer, const std::shared_ptr<State>& state) {
    const QPointer<QLocalSocket> alive(peer);
    while (alive && state->open && peer->canReadLine()) {
      const std::string line = peer->readLine(kLongestLine).toStdString();
      if (!line.ends_with('\n')) return give_up(peer, *state);
      deliver(line, *state);
    }
    if (alive && state->open && peer->bytesAvailable() >= kLongestLine) give_up(peer, *state);
  }

  // The rest of a line that is too long must not be taken for a message.
  static void give_up(QLocalSocket* peer, State& state) {
    ++state.names->dropped;
    peer->abort();
  }

  static void deliver(std::string_view line, State& state) {
    line.remove_suffix(1);
    const auto parsed = protocol::read_message_line(line);
    const std::size_t message = parsed ? state.names->messages.number_of(parsed->name) : 0;
    if (message == 0) {
      ++state.names->dropped;
      return;
    }
    const WindowProcedure procedure = state.procedure;  // it may replace itself
    if (procedure) procedure(state.handle, static_cast<MessageId>(message), parsed->word, parsed->value);
  }

  OwnedServer owned_;
  std::shared_ptr<State> state_;
};

MessageChannelLocal::MessageChannelLocal(std::string run_folder, std::string runtime_folder)
    : run_folder_(std::move(run_folder)),
      runtime_folder_(std::move(runtime_folder)),
      names_(std::make_shared<Names>()) {}

MessageChannelLocal::~MessageChannelLocal() = default;

MessageId MessageChannelLocal::register_message(const std::string& name) {
  return static_cast<MessageId>(names_->messages.number_of(name));
}

WindowHandle MessageChannelLocal::find_window(const std::string& title) {
  const bool open = socket_is_served(local_socket_path(run_folder_, runtime_folder_, title));
  return open ? names_->titles.number_of(title) : 0;
}

void MessageChannelLocal::post(WindowHandle window, MessageId message, std::uint64_t word,
                               std::int64_t value) {
  const std::string* title = names_->titles.text_of(window);
  const std::string* name = names_->messages.text_of(message);
  if (title == nullptr || name == nullptr) return;
  QLocalSocket peer;
  peer.connectToServer(local_socket_path(run_folder_, runtime_folder_, *title), QIODevice::WriteOnly);
  if (!peer.waitForConnected(kConnectLimit)) return;
  const std::string line = protocol::message_line_text(
      {*name, static_cast<std::uint32_t>(word), static_cast<std::int32_t>(value)});
  peer.write(line.data(), static_cast<qint64>(line.size()));
  peer.waitForBytesWritten(kConnectLimit);
}

std::unique_ptr<platform::Window> MessageChannelLocal::open_window(const std::string& title,
                                                                   WindowProcedure procedure) {
  return std::make_unique<LocalWindow>(local_socket_path(run_folder_, runtime_folder_, title),
                                       names_->titles.number_of(title), names_, std::move(procedure));
}

std::uint64_t MessageChannelLocal::dropped() const {
  return names_->dropped;
}

}  // namespace qvrcom::adapters
