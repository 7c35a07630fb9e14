#include "adapters/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QCoreApplication>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <thread>

#include "adapters/posix_fault.h"
#include "base/fault.h"
#include "base/text.h"

namespace qvrcom::adapters {
namespace {

constexpr std::chrono::milliseconds kLookTime{20};
constexpr std::size_t kLongestName = 64;

// Two lines, the process and its program. They inform: a full disk may keep them out.
void write_holder(int file) {
  const std::string text =
      std::to_string(::getpid()) + '\n' + QCoreApplication::applicationName().toStdString() + '\n';
  if (::ftruncate(file, 0) == 0) write_all(file, text);
}

}  // namespace

std::optional<FileLock> FileLock::try_take(const std::string& path) {
  Descriptor file = open_plain("Locking", path, O_RDWR | O_CREAT, Links::kRefused, 0600);
  if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
    if (errno == EWOULDBLOCK) return std::nullopt;
    fail("Locking", path);
  }
  write_holder(file.get());
  return FileLock(std::move(file));
}

FileLock FileLock::take(const std::string& path, const char* what, std::chrono::milliseconds longest) {
  for (auto waited = std::chrono::milliseconds(0); waited <= longest; waited += kLookTime) {
    if (auto lock = try_take(path)) return std::move(*lock);
    std::this_thread::sleep_for(kLookTime);
  }
  throw base::Fault(base::kPermissionDenied,
                    std::string(what) + ": " + owner(path) + " is at it. Try again in a moment.");
}

std::string FileLock::owner(const std::string& path) {
  const std::string nobody_known = "another program";
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  std::array<char, 256> bytes{};
  const ssize_t got = file.open() ? ::read(file.get(), bytes.data(), bytes.size()) : 0;
  if (got <= 0) return nobody_known;
  const auto lines = base::lines_of({bytes.data(), static_cast<std::size_t>(got)});
  if (lines.size() < 2 || lines[1].empty() || lines[1].size() > kLongestName) return nobody_known;
  pid_t process = 0;
  const auto [end, error] = std::from_chars(lines[0].data(), lines[0].data() + lines[0].size(), process);
  const bool number = error == std::errc() && end == lines[0].data() + lines[0].size() && process > 0;
  // One that is no more wrote it before the present holder could.
  if (!number || (::kill(process, 0) != 0 && errno == ESRCH) || base::has_control_character(lines[1]))
    return nobody_known;
  return std::string(lines[1]) + " (process " + std::to_string(process) + ")";
}

FileLock::~FileLock() {
  [[maybe_unused]] const int informs_no_more = file_.open() ? ::ftruncate(file_.get(), 0) : 0;
}

platform::SessionLock::Attempt SessionLockFile::try_acquire() {
  struct Hold : platform::SessionLockHold {
    explicit Hold(FileLock taken) : lock(std::move(taken)) {}
    FileLock lock;
  };
  const std::string file = folder_() + "/session.lock";
  if (auto lock = FileLock::try_take(file)) return {std::make_unique<Hold>(std::move(*lock)), {}};
  return {nullptr, FileLock::owner(file)};
}

}  // namespace qvrcom::adapters
