#include "adapters/plain_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

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

ssize_t read_some(int file, char* buffer, std::size_t room) {
  while (true) {
    const ssize_t got = ::read(file, buffer, room);
    if (got >= 0 || errno != EINTR) return got;
  }
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

bool sync_folder_of(const std::string& path) {
  const std::string name = path.substr(0, path.rfind('/') + 1);
  const Descriptor folder(::open(name.empty() ? "." : name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // A folder that takes files and shows none cannot be asked.
  if (!folder.open()) return errno == EACCES;
  return ::fsync(folder.get()) == 0 || errno == EINVAL || errno == ENOTSUP;
}

PartFile::PartFile(std::string path) : path_(std::move(path)), part_(path_ + ".part"), file_(-1) {
  ::unlink(part_.c_str());  // left behind by a program that was killed
  file_ = open_plain("Writing", part_, O_WRONLY | O_CREAT | O_EXCL, Links::kRefused, 0600);
}

PartFile::~PartFile() {
  if (file_.open()) ::unlink(part_.c_str());
}

void PartFile::write(std::string_view bytes) {
  length_ += bytes.size();
  if (!write_all(file_.get(), bytes)) fail("Writing", part_);
}

void PartFile::keep() {
  if (::fdatasync(file_.get()) != 0 || std::rename(part_.c_str(), path_.c_str()) != 0) fail("Writing", part_);
  if (!sync_folder_of(path_)) fail("Writing", path_);
  file_ = Descriptor(-1);
}

SourceFile::SourceFile(const std::string& path) : path_(path), file_(open_plain("Reading", path, O_RDONLY)) {
  struct stat status {};
  if (::fstat(file_.get(), &status) != 0) fail("Reading", path_);
  length_ = static_cast<std::uint64_t>(status.st_size);
}

std::size_t SourceFile::read(char* buffer, std::size_t room) {
  const ssize_t got = read_some(file_.get(), buffer, room);
  if (got < 0) fail("Reading", path_);
  return static_cast<std::size_t>(got);
}

}  // namespace qvrcom::adapters
