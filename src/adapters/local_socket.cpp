#include "adapters/local_socket.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QLocalSocket>
#include <QUrl>
#include <chrono>

#include "adapters/lock_fault.h"
#include "base/fault.h"

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace qvrcom::adapters {
namespace {

// A socket address holds 107 bytes; while it comes to life the path has a temporary name, nine bytes longer.
constexpr qsizetype kLongestPath = 96;
constexpr int kConnectLimit = 200;  // milliseconds

#ifdef Q_OS_UNIX
bool make_private_folder(const QByteArray& native) {
  ::mkdir(native.constData(), 0700);
  struct stat status {};
  return ::lstat(native.constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == ::geteuid() && ::chmod(native.constData(), 0700) == 0;
}
#else
bool make_private_folder(const QByteArray& native) {
  return QDir().mkpath(QFile::decodeName(native));
}
#endif

void need_private_folder(const QString& folder) {
  QDir().mkpath(QFileInfo(folder).path());
  if (make_private_folder(QFile::encodeName(folder))) return;
  throw base::Fault(base::kPermissionDenied,
                    "The folder \"" + folder.toStdString() +
                        "\" for local messages cannot be made, or belongs to somebody "
                        "else. Check its owner.");
}

// A lock that carries this very process's number although this process does not serve the socket was left by
// an earlier process of that number, as happens where numbers start over in a container.
bool left_by_a_namesake(const QLockFile& lock, const QString& path) {
  qint64 process = 0;
  QString host;
  QString program;
  return lock.getLockInfo(&process, &host, &program) && process == QCoreApplication::applicationPid() &&
         !socket_is_served(path);
}

bool take(QLockFile& lock, const QString& path) {
  lock.setStaleLockTime(std::chrono::milliseconds(0));  // age proves nothing; a dead owner does
  if (lock.tryLock(std::chrono::milliseconds(0))) return true;
  return left_by_a_namesake(lock, path) && lock.removeStaleLockFile() &&
         lock.tryLock(std::chrono::milliseconds(0));
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

OwnedServer::OwnedServer(const QString& path) : lock_(path + ".lock"), server_(new QLocalServer) {
  std::unique_ptr<QLocalServer> guard(server_);
  need_private_folder(QFileInfo(path).path());
  if (!take(lock_, path)) {
    if (lock_.error() != QLockFile::LockFailedError) fail_lock(lock_, path.toStdString() + ".lock");
    throw base::Fault(base::kPermissionDenied,
                      "\"" + path.toStdString() + "\" is served by another running program.");
  }
  QLocalServer::removeServer(path);
  // With this option the socket listens before it gets its name: nobody finds it half-open.
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
