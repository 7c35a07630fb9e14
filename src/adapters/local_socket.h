#pragma once

#include <QLocalServer>
#include <QString>
#include <string>

#include "adapters/file_lock.h"

namespace qvrcom::adapters {

// Where the socket of a name lies: in the run folder, or, where that path would be too long for a socket
// address, in the runtime folder under a hash of both. Neither folder is made.
QString local_socket_path(const std::string& run_folder, const std::string& runtime_folder,
                          const std::string& name);

// Whether a live program serves the path now. A socket that a killed program left behind is not served.
bool socket_is_served(const QString& path);

// A socket that this program alone serves. The owner holds a lock beside it, so what a killed program or a
// power failure left of the socket is taken over and a live one never.
class OwnedServer {
 public:
  // Fault when a live program serves the path, something of another kind lies there, or its folder cannot be
  // made or belongs to someone else.
  explicit OwnedServer(const QString& path);
  ~OwnedServer();
  OwnedServer(const OwnedServer&) = delete;
  OwnedServer& operator=(const OwnedServer&) = delete;

  QLocalServer& server() { return *server_; }

 private:
  FileLock lock_;
  QLocalServer* server_;  // deleted by the event loop: its owner may go while it delivers
};

}  // namespace qvrcom::adapters
