#include "adapters/programs_qt.h"

#include <QFileInfo>
#include <QProcess>

#include "adapters/paths.h"

namespace qvrcom::adapters {

std::string ProgramsQt::start_hidden(const std::string& path) {
  std::string program = native_path(path);
  if (program.ends_with(".exe")) program.resize(program.size() - 4);
  const QFileInfo file(QString::fromStdString(program));
  if (!file.isFile()) return "\"" + program + "\" is missing. Check the setting AppPath.";
  if (!file.isExecutable()) return "\"" + program + "\" may not be started. Check its rights.";
  QProcess process;
  process.setProgram(file.filePath());
  process.setStandardInputFile(QProcess::nullDevice());
  process.setStandardOutputFile(QProcess::nullDevice());
  process.setStandardErrorFile(QProcess::nullDevice());
  if (process.startDetached()) return {};
  return "\"" + program + "\" could not be started: " + process.errorString().toStdString() + ".";
}

}  // namespace qvrcom::adapters
