#include "adapters/plain_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "adapters/posix_fault.h"
#include "base/fault.h"

namespace qvrcom::adapters {
namespace {

[[noreturn]] void refuse_link(const std::string& native) {
  throw base::Fault(base::kPermissionDenied, '"' + native + "\" is a link, which is not followed.");
}

[[noreturn]] void refuse_other(const std::string& native) {
  throw base::Fault("Path/File access error",
                    '"' + native + "\" is not a plain file. Move it away, or name another file.");
}

}  // namespace

Descriptor::~Descriptor() {
  if (number_ >= 0) ::close(number_);
}

Descriptor open_plain(const char* what, const std::string& native, int flags, Links links, mode_t mode) {
  const int no_follow = links == Links::kRefused ? O_NOFOLLOW : 0;
  Descriptor file(::open(native.c_str(), flags | no_follow | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, mode));
  if (!file.open() && errno == ELOOP && no_follow != 0) refuse_link(native);
  if (!file.open() && errno == ENXIO) refuse_other(native);  // a pipe that nobody reads, a socket
  struct stat status {};
  if (!file.open() || ::fstat(file.get(), &status) != 0) fail(what, native);
  if (!S_ISREG(status.st_mode)) refuse_other(native);
  return file;
}

void need_plain(const std::string& native) {
  struct stat status {};
  if (::lstat(native.c_str(), &status) != 0 || S_ISREG(status.st_mode)) return;
  S_ISLNK(status.st_mode) ? refuse_link(native) : refuse_other(native);
}

bool write_all(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool make_folders(const std::string& native) {
  for (std::size_t end = 0; end != std::string::npos;) {
    end = native.find('/', end + 1);
    ::mkdir(native.substr(0, end).c_str(), 0755);  // what is missing in the end tells
  }
  struct stat status {};
  return ::stat(native.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace qvrcom::adapters
