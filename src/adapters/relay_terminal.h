#pragma once

#include <QByteArray>
#include <QLocalSocket>
#include <QObject>
#include <QPointer>
#include <functional>
#include <optional>
#include <string>

#include "adapters/local_socket.h"
#include "protocol/terminal_frame.h"

namespace qvrcom::adapters {

// The terminal's end of a relayed Telnet session: the socket that is there as long as this object, and the
// one terminal that comes to it for the job. All others are told why they may not, and hung up on.
class RelayTerminal : public QObject {
 public:
  // Called while events run.
  struct Outlets {
    std::function<void()> came;   // the terminal is there; once
    std::function<void()> moved;  // it has sent something, or taken some of what was said
    std::function<void()> left;
  };
  RelayTerminal(const QString& socket_path, std::string job_name, Outlets outlets);

  bool here() const { return peer_ != nullptr; }

  // Tells the terminal, which must be here, that the session is there, and all that was said so far.
  void attach();

  // Frames, kept until a terminal has been attached.
  void say(const std::string& frames);

  // Bytes that were said and the terminal has not taken.
  qint64 backlog() const { return attached_ && here() ? peer_->bytesToWrite() : unseen_.size(); }

  // Reads a piece of what the terminal has sent; false when there is none.
  bool read();
  // The next whole frame of what was read.
  std::optional<protocol::TerminalFrame> next() { return frames_.next(); }
  bool damaged() const { return frames_.damaged(); }

  // Says as the last word why the session has ended; waits so many milliseconds at most for it to arrive.
  void dismiss(const std::string& why, int limit);

 private:
  void welcome();
  void greet(QLocalSocket* peer);

  const std::string job_name_;
  const Outlets outlets_;
  OwnedServer owned_;
  QPointer<QLocalSocket> peer_;
  protocol::TerminalFrameReader frames_;
  QByteArray unseen_;  // frames that wait for the terminal
  bool attached_ = false;
};

}  // namespace qvrcom::adapters
