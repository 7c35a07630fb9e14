#include <unistd.h>

#include <QDir>
#include <QStandardPaths>
#include <filesystem>

#include "adapters/layout.h"
#include "base/fault.h"
#include "base/text.h"

namespace qvrcom::adapters {
namespace {

QString standard(QStandardPaths::StandardLocation place) {
  return QStandardPaths::writableLocation(place);
}

// Without a login session there is no runtime folder: a folder of the user's in the temporary one serves.
QString runtime() {
  const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
  if (!folder.isEmpty()) return folder + "/qvrcom";
  return standard(QStandardPaths::TempLocation) + "/qvrcom-" + QString::number(::getuid());
}

// A variable's text as it is; Fault when its bytes are no text, which would become the name of another
// folder.
QString variable(const char* name) {
  const QByteArray bytes = qgetenv(name);
  QString text = QString::fromUtf8(bytes);
  if (text.toUtf8() != bytes)
    throw base::Fault("Bad file name",
                      std::string(name) + " holds bytes that are no UTF-8. Choose another folder.");
  return text;
}

// The same folder has the same name for all programs, whatever links they came by.
QString resolved(const QString& folder) {
  const std::string absolute = QDir::cleanPath(QDir::current().absoluteFilePath(folder)).toStdString();
  std::error_code error;
  const auto path = std::filesystem::weakly_canonical(absolute, error);
  return QString::fromStdString(error ? absolute : path.string());
}

void check(const std::string& path) {
  const bool bad = path.find_first_of(";^\\") != std::string::npos || base::has_control_character(path);
  if (bad) {
    throw base::Fault("Bad file name",
                      "\"" + path +
                          "\" holds a semicolon, a caret, a backslash or a control character, which a "
                          "job cannot carry. Choose another folder with QVRCOM_ROOT.");
  }
}

}  // namespace

Layout Layout::from_environment() {
  Layout layout;
  const QString root = variable("QVRCOM_ROOT");
  if (!root.isEmpty()) {
    const QString absolute = resolved(root);
    layout.root = absolute.toStdString();
    layout.config_folder = (absolute + "/config").toStdString();
    layout.app_data_folder = (absolute + "/AppData").toStdString();
    layout.documents_folder = (absolute + "/Documents").toStdString();
    layout.run_folder = (absolute + "/run").toStdString();
  } else {
    layout.config_folder = (standard(QStandardPaths::GenericConfigLocation) + "/qvrcom").toStdString();
    layout.app_data_folder = standard(QStandardPaths::GenericDataLocation).toStdString();
    layout.documents_folder = standard(QStandardPaths::DocumentsLocation).toStdString();
    layout.run_folder = runtime().toStdString();
  }
  layout.plugin_folder = layout.config_folder + "/plugins";
  layout.runtime_folder = runtime().toStdString();
  for (const std::string* path : {&layout.config_folder, &layout.app_data_folder, &layout.documents_folder})
    check(*path);
  return layout;
}

}  // namespace qvrcom::adapters
