#include "cli/local_file.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <istream>
#include <system_error>
#include <utility>

#include "base/fault.h"
#include "base/text.h"
#include "platform/files.h"

namespace qvrcom::cli {
namespace {

constexpr int kWriterTime = 3;  // seconds for somebody to open a pipe that is to be written to
constexpr int kSilentWaits =
    20;  // as often, for one who has and writes nothing: a person may have to be asked

std::string seconds_text(int seconds) {
  return std::to_string(seconds) + " seconds";
}

// A plain file or a pipe, open for reading.
class Source {
 public:
  explicit Source(const std::string& path)
      : path_(path), file_(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)) {
    struct stat status {};
    if (file_ < 0 || ::fstat(file_, &status) != 0) fail_reading();
    if (S_ISREG(status.st_mode) || S_ISFIFO(status.st_mode)) return;
    ::close(file_);
    throw base::Fault("Cannot read", "\"" + path + "\" is neither a plain file nor a pipe.");
  }
  ~Source() { ::close(file_); }
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;

  // Up to `limit` bytes, or to the block with the first line end.
  std::string read(std::size_t limit, bool one_line) {
    std::string bytes;
    std::array<char, 65536> block{};
    while (bytes.size() < limit) {
      const std::size_t got = read_some(block.data(), std::min(block.size(), limit - bytes.size()));
      if (got == 0) break;
      bytes.append(block.data(), got);
      if (one_line && bytes.find('\n') != std::string::npos) break;
    }
    return bytes;
  }

 private:
  // 0 at the end. A pipe that nobody has opened yet says that it is at its end, too, but is not ready.
  std::size_t read_some(char* into, std::size_t size) {
    for (int waits = 0;;) {
      pollfd readable{file_, POLLIN, 0};
      const int ready = ::poll(&readable, 1, kWriterTime * 1000);
      const ssize_t got = ready < 0 ? -1 : ::read(file_, into, size);
      if (got > 0 || (got == 0 && ready > 0)) return static_cast<std::size_t>(got);
      if (got == 0) fail_waiting("nobody has opened the pipe to write to it in " + seconds_text(kWriterTime));
      if (errno == EAGAIN && ++waits == kSilentWaits)
        fail_waiting("nothing has come out of the pipe for " + seconds_text(kWriterTime * kSilentWaits));
      if (errno != EAGAIN && errno != EINTR) fail_reading();
    }
  }

  [[noreturn]] void fail_waiting(const std::string& what) const {
    throw base::Fault("Cannot read",
                      "\"" + path_ + "\": " + what + ". Start what writes to it, then try again.");
  }

  [[noreturn]] void fail_reading() {
    const int code = errno;
    if (file_ >= 0) ::close(std::exchange(file_, -1));
    throw base::Fault("Cannot read", "\"" + path_ + "\": " + std::generic_category().message(code) + ".");
  }

  std::string path_;
  int file_;
};

void require_readable_size(const std::string& bytes, const std::string& source) {
  if (bytes.size() > platform::Files::kReadLimit)
    throw base::Fault("File too large", source + " is larger than 256 MiB.");
}

std::string first_line(std::string_view text) {
  const auto lines = base::lines_of(text);
  return lines.empty() ? std::string() : std::string(lines.front());
}

}  // namespace

std::string read_local_file(const std::string& path) {
  const std::string bytes = Source(path).read(platform::Files::kReadLimit + 1, false);
  require_readable_size(bytes, "\"" + path + "\"");
  return bytes;
}

std::string read_first_line(const std::string& path, std::size_t limit) {
  return first_line(Source(path).read(limit, true));
}

std::string read_all(std::istream& in) {
  std::string bytes;
  std::array<char, 65536> block{};
  while (bytes.size() <= platform::Files::kReadLimit &&
         (in.read(block.data(), block.size()) || in.gcount() > 0))
    bytes.append(block.data(), static_cast<std::size_t>(in.gcount()));
  require_readable_size(bytes, "Standard input");
  return bytes;
}

std::string read_line(std::istream& in, std::size_t limit) {
  std::string bytes;
  for (char byte = 0; bytes.size() < limit && in.get(byte) && byte != '\n';)
    bytes += byte;
  return first_line(bytes);
}

void keep_to_owner(int descriptor) {
  struct stat status {};
  if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || (status.st_mode & 077U) == 0) return;
  if (::fchmod(descriptor, 0600) == 0) return;
  throw base::Fault(
      "Access codes are not written where others can read them",
      "Standard output goes to a file of another user. Name a file instead, or leave the codes out.");
}

}  // namespace qvrcom::cli
