#include "adapters/transfer_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "adapters/posix_fault.h"
#include "base/fault.h"

namespace qvrcom::adapters {
namespace {

// O_NOFOLLOW answers a link with ELOOP, which nobody would understand.
[[noreturn]] void fail_to_open(const char* what, const std::string& path) {
  if (errno == ELOOP)
    throw base::Fault(base::kPermissionDenied, '"' + path + "\" is a link, which is not followed.");
  fail(what, path);
}

}  // namespace

bool sync_folder_of(const std::string& path) {
  const std::string name = path.substr(0, path.rfind('/') + 1);
  const int folder = ::open(name.empty() ? "." : name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  // A folder that takes files and shows none cannot be asked.
  if (folder < 0) return errno == EACCES;
  const bool synced = ::fsync(folder) == 0 || errno == EINVAL || errno == ENOTSUP;
  ::close(folder);
  return synced;
}

PartFile::PartFile(std::string path) : path_(std::move(path)), part_(path_ + ".part") {
  ::unlink(part_.c_str());  // left behind by a program that was killed
  file_ = ::open(part_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
  if (file_ < 0) fail_to_open("Writing", part_);
}

PartFile::~PartFile() {
  if (file_ < 0) return;
  ::close(file_);
  ::unlink(part_.c_str());
}

void PartFile::write(std::string_view bytes) {
  length_ += bytes.size();
  while (!bytes.empty()) {
    const ssize_t written = ::write(file_, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) fail("Writing", part_);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

void PartFile::keep() {
  if (::fdatasync(file_) != 0 || std::rename(part_.c_str(), path_.c_str()) != 0) fail("Writing", part_);
  if (!sync_folder_of(path_)) fail("Writing", path_);
  ::close(file_);
  file_ = -1;
}

SourceFile::SourceFile(const std::string& path)
    : path_(path), file_(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC)) {
  if (file_ < 0) fail_to_open("Reading", path_);
  struct stat status {};
  if (::fstat(file_, &status) == 0 && S_ISREG(status.st_mode)) {
    length_ = static_cast<std::uint64_t>(status.st_size);
    return;
  }
  ::close(file_);
  throw base::Fault("Path/File access error", "\"" + path_ + "\" is not a plain file.");
}

SourceFile::~SourceFile() {
  ::close(file_);
}

std::size_t SourceFile::read(char* buffer, std::size_t room) {
  while (true) {
    const ssize_t got = ::read(file_, buffer, room);
    if (got >= 0) return static_cast<std::size_t>(got);
    if (errno != EINTR) fail("Reading", path_);
  }
}

}  // namespace qvrcom::adapters
