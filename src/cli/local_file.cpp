#include "cli/local_file.h"

#include <QFile>
#include <QSaveFile>

#include "base/fault.h"

namespace qvrcom::cli {
namespace {

[[noreturn]] void fail(const char* description, const std::string& path, const QFileDevice& file) {
  throw base::Fault(description, "\"" + path + "\": " + file.errorString().toStdString() + ".");
}

}  // namespace

std::string read_local_file(const std::string& path) {
  QFile file(QString::fromStdString(path));
  if (!file.open(QFile::ReadOnly)) fail("Cannot read", path, file);
  const QByteArray bytes = file.readAll();
  if (file.error() != QFile::NoError) fail("Cannot read", path, file);
  return bytes.toStdString();
}

void write_private_file(const std::string& path, std::string_view text) {
  QSaveFile file(QString::fromStdString(path));
  const bool written =
      file.open(QFile::WriteOnly) && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) &&
      file.write(text.data(), static_cast<qint64>(text.size())) == static_cast<qint64>(text.size()) &&
      file.commit();
  if (!written) fail("Cannot write", path, file);
}

}  // namespace qvrcom::cli
