#include "adapters/local_socket.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QUrl>

#include "adapters/plain_file.h"
#include "base/fault.h"

namespace qvrcom::adapters {
namespace {

// A socket address holds 107 bytes; while it comes to life the path has a temporary name, nine bytes longer.
constexpr qsizetype kLongestPath = 96;
constexpr int kConnectLimit = 200;  // milliseconds

bool make_private_folder(const QByteArray& native) {
  ::mkdir(native.constData(), 0700);
  struct stat status {};
  return ::lstat(native.constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == ::geteuid() && ::chmod(native.constData(), 0700) == 0;
}

void need_private_folder(const QString& folder) {
  make_folders(QFile::encodeName(QFileInfo(folder).path()).toStdString());
  if (make_private_folder(QFile::encodeName(folder))) return;
  throw base::Fault(base::kPermissionDenied,
                    "The folder \"" + folder.toStdString() +
                        "\" for local messages cannot be made, or belongs to somebody "
                        "else. Check its owner.");
}

// The folder first: the lock lies in it.
FileLock lock_of(const QString& path) {
  need_private_folder(QFileInfo(path).path());
  const std::string file = path.toStdString() + ".lock";
  if (auto lock = FileLock::try_take(file)) return std::move(*lock);
  throw base::Fault(base::kPermissionDenied,
                    '"' + path.toStdString() + "\" is served by " + FileLock::owner(file) + '.');
}

// What may lie there and be replaced: a socket that nobody serves, or a plain file, as a restored copy or a
// broken disk leaves of one.
void need_remains(const QString& path) {
  struct stat status {};
  const bool there = ::lstat(QFile::encodeName(path).constData(), &status) == 0;
  if (there && !S_ISSOCK(status.st_mode)) need_plain(QFile::encodeName(path).toStdString());
}

}  // namespace

QString local_socket_path(const std::string& run_folder, const std::string& runtime_folder,
                          const std::string& name) {
  const QString folder = QString::fromStdString(run_folder);
  const QByteArray file = QUrl::toPercentEncoding(QString::fromStdString(name)) + ".socket";
  const QString path = folder + '/' + QString::fromLatin1(file);
  if (QFile::encodeName(path).size() <= kLongestPath) return path;
  const QByteArray hash =
      QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha256).toHex().left(32);
  return QString::fromStdString(runtime_folder) + '/' + QString::fromLatin1(hash);
}

bool socket_is_served(const QString& path) {
  QLocalSocket probe;
  probe.connectToServer(path, QIODevice::WriteOnly);
  return probe.waitForConnected(kConnectLimit);
}

OwnedServer::OwnedServer(const QString& path) : lock_(lock_of(path)), server_(new QLocalServer) {
  std::unique_ptr<QLocalServer> guard(server_);
  need_remains(path);
  // With this option the socket listens before it gets its name, which it takes from whatever has it: nobody
  // finds it half-open.
  server_->setSocketOptions(QLocalServer::UserAccessOption);
  if (!server_->listen(path)) {
    throw base::Fault(base::kPermissionDenied, "\"" + path.toStdString() + "\" cannot be served: " +
                                                   server_->errorString().toStdString() + ".");
  }
  guard.release();
}

OwnedServer::~OwnedServer() {
  server_->close();
  server_->deleteLater();
}

}  // namespace qvrcom::adapters
