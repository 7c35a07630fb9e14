#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QString>
#include <string>

namespace qvrcom::adapters {

// Where the socket of a name lies: in the run folder, or, where that path would be too long for a socket
// address, in the runtime folder under a hash of both. Neither folder is made.
QString local_socket_path(const std::string& run_folder, const std::string& runtime_folder,
                          const std::string& name);

// Whether a live program serves the path now. A socket that a killed program left behind is not served.
bool socket_is_served(const QString& path);

// A socket that this program alone serves. A lock file beside it proves the owner alive, so a socket that a
// killed program left behind is taken over and a live one never.
class OwnedServer {
 public:
  // Fault when a live program serves the path, or its folder cannot be made or belongs to someone else.
  explicit OwnedServer(const QString& path);
  ~OwnedServer();
  OwnedServer(const OwnedServer&) = delete;
  OwnedServer& operator=(const OwnedServer&) = delete;

  QLocalServer& server() { return *server_; }

 private:
  QLockFile lock_;
  QLocalServer* server_;  // deleted by the event loop: its owner may go while it delivers
};

}  // namespace qvrcom::adapters
