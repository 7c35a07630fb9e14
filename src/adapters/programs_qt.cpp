#include "adapters/programs_qt.h"

#include <sys/mman.h>
#include <unistd.h>

#include <QFileInfo>
#include <QProcess>
#include <array>

#include "adapters/posix_fault.h"
#include "base/text.h"

namespace qvrcom::adapters {
namespace {

constexpr std::size_t kMostWords = 2000;  // bytes

// A file of memory outlives whoever started the program: writing into it never fails for want of a reader.
QString path_of(const Descriptor& memory) {
  return memory.open() ? QStringLiteral("/proc/self/fd/%1").arg(memory.get()) : QProcess::nullDevice();
}

}  // namespace

std::string ProgramsQt::native(const std::string& path) const {
  std::string program = native_path(path);
  if (program.ends_with(".exe")) program.resize(program.size() - 4);
  return program;
}

std::string ProgramsQt::start_hidden(const std::string& path) {
  const std::string program = native(path);
  const QFileInfo file(QString::fromStdString(program));
  if (!file.isFile()) return "\"" + program + "\" is missing. Check the setting AppPath.";
  if (!file.isExecutable()) return "\"" + program + "\" may not be started. Check its rights.";
  words_ = Descriptor(::memfd_create("standard error", MFD_CLOEXEC));
  QProcess process;
  process.setProgram(file.filePath());
  process.setStandardInputFile(QProcess::nullDevice());
  process.setStandardOutputFile(QProcess::nullDevice());
  process.setStandardErrorFile(path_of(words_));
  if (process.startDetached()) return {};
  return "\"" + program + "\" could not be started: " + process.errorString().toStdString() + ".";
}

std::string ProgramsQt::said() const {
  std::array<char, kMostWords> bytes{};
  const ssize_t got = words_.open() ? ::pread(words_.get(), bytes.data(), bytes.size(), 0) : 0;
  std::string words;
  for (const std::string_view line :
       base::lines_of({bytes.data(), static_cast<std::size_t>(got > 0 ? got : 0)})) {
    if (!words.empty()) words += words.ends_with('.') ? " " : ". ";
    words += base::trim(line);
  }
  return words;
}

}  // namespace qvrcom::adapters
