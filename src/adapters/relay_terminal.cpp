#include "adapters/relay_terminal.h"

#include <QTimer>
#include <utility>

namespace qvrcom::adapters {
namespace {

constexpr qint64 kMostWaiting = 65536;  // bytes that the terminal sends and nobody reads
constexpr qint64 kPiece = 8192;         // bytes of one read
constexpr int kHelloLimit = 2000;       // milliseconds until a terminal has said its job

QByteArray frame_bytes(char kind, std::string_view payload) {
  return QByteArray::fromStdString(protocol::terminal_frame_text(kind, payload));
}

void add_bytes(protocol::TerminalFrameReader& frames, const QByteArray& bytes) {
  frames.add({bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

void hang_up(QLocalSocket* peer, char kind, const std::string& why) {
  peer->write(frame_bytes(kind, why));
  peer->disconnectFromServer();
}

}  // namespace

RelayTerminal::RelayTerminal(const QString& socket_path, std::string job_name, Outlets outlets)
    : job_name_(std::move(job_name)), outlets_(std::move(outlets)), owned_(socket_path) {
  connect(&owned_.server(), &QLocalServer::newConnection, this, [this] { welcome(); });
}

void RelayTerminal::attach() {
  attached_ = true;
  peer_->write(frame_bytes(protocol::kTerminalAttach, job_name_));
  peer_->write(std::exchange(unseen_, {}));
}

void RelayTerminal::say(const std::string& frames) {
  const QByteArray bytes = QByteArray::fromStdString(frames);
  if (!attached_)
    unseen_ += bytes;
  else if (here())
    peer_->write(bytes);
}

bool RelayTerminal::read() {
  if (!here() || peer_->bytesAvailable() == 0) return false;
  add_bytes(frames_, peer_->read(kPiece));
  return true;
}

void RelayTerminal::dismiss(const std::string& why, int limit) {
  if (!here()) return;
  disconnect(peer_, nullptr, this, nullptr);
  hang_up(peer_, protocol::kTerminalEnd, why);
  if (peer_->state() != QLocalSocket::UnconnectedState) peer_->waitForDisconnected(limit);
}

void RelayTerminal::welcome() {
  while (QLocalSocket* peer = owned_.server().nextPendingConnection()) {
    peer->setReadBufferSize(kMostWaiting);
    connect(peer, &QLocalSocket::disconnected, peer, &QObject::deleteLater);
    connect(peer, &QLocalSocket::readyRead, this, [this, peer] { greet(peer); });
    QTimer::singleShot(kHelloLimit, peer, [this, peer] {
      if (peer != peer_) peer->abort();
    });
    greet(peer);
  }
}

// A peer says first which job it is for.
void RelayTerminal::greet(QLocalSocket* peer) {
  if (peer == peer_) return outlets_.moved();
  protocol::TerminalFrameReader frames;
  add_bytes(frames, peer->peek(kPiece));
  const auto hello = frames.next();
  if (frames.damaged()) return peer->abort();
  if (!hello) return;
  if (hello->kind != protocol::kTerminalAttach || hello->payload != job_name_)
    return hang_up(peer, protocol::kTerminalNotHere, "Another job has its Telnet session.");
  if (here()) return hang_up(peer, protocol::kTerminalTaken, "Another terminal has attached already.");
  peer_ = peer;
  connect(peer, &QLocalSocket::bytesWritten, this, [this] { outlets_.moved(); });
  connect(peer, &QLocalSocket::disconnected, this, [this] { outlets_.left(); });
  outlets_.came();
}

}  // namespace qvrcom::adapters
