#include "adapters/files_posix.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "adapters/paths.h"
#include "adapters/posix_fault.h"
#include "adapters/transfer_files.h"
#include "base/fault.h"
#include "base/text.h"

namespace qvrcom::adapters {
namespace {

using base::Fault;
using platform::Readers;

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return number_; }
  bool open() const { return number_ >= 0; }

 private:
  int number_;
};

// False when a write fails; errno says why.
bool write_all(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

struct stat status_of(int file, const std::string& native) {
  struct stat status {};
  if (::fstat(file, &status) != 0) fail("Reading", native);
  return status;
}

// What a file gets that is written anew: the rights of the one that was there, or of a new one. The system
// takes away what the user wants nobody to have.
struct Rights {
  Rights(const std::string& native, Readers readers) {
    struct stat status {};
    exact = readers == Readers::kOwner || ::stat(native.c_str(), &status) == 0;
    if (readers == Readers::kOwner)
      mode = 0600;
    else
      mode = exact ? status.st_mode & 0777U : 0644U;
  }
  mode_t mode = 0;
  bool exact = false;  // to be given as they are
};

void rewrite_in_place(const std::string& native, std::string_view text, const Rights& rights) {
  const Descriptor file(::open(native.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, rights.mode));
  const bool written = file.open() && (!rights.exact || ::fchmod(file.get(), rights.mode) == 0) &&
                       ::ftruncate(file.get(), 0) == 0 && write_all(file.get(), text) &&
                       ::fdatasync(file.get()) == 0;
  if (!written) fail("Writing", native);
}

std::string aside_name(const std::string& native) {
  const auto name = native.rfind('/') + 1;
  return native.substr(0, name) + "." + native.substr(name) + "." + std::to_string(::getpid()) + ".new";
}

bool refused(int code) {
  return code == EACCES || code == EPERM || code == EBUSY || code == EXDEV;
}

// Writes `text` to a new file beside the target. False when the folder takes no new file.
bool write_aside(const std::string& aside, const std::string& target, std::string_view text,
                 const Rights& rights) {
  ::unlink(aside.c_str());  // left behind by a program of the same number that was killed
  const mode_t first = rights.exact ? 0600 : rights.mode;
  const Descriptor file(::open(aside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, first));
  if (!file.open()) {
    if (refused(errno)) return false;
    fail("Writing", target);
  }
  const bool written = write_all(file.get(), text) &&
                       (!rights.exact || ::fchmod(file.get(), rights.mode) == 0) &&
                       ::fdatasync(file.get()) == 0;
  if (written) return true;
  const int code = errno;
  ::unlink(aside.c_str());
  fail("Writing", target, code);
}

void write_over(const std::string& native, std::string_view text, Readers readers) {
  const Rights rights(native, readers);
  const std::string aside = aside_name(native);
  if (!write_aside(aside, native, text, rights)) return rewrite_in_place(native, text, rights);
  if (std::rename(aside.c_str(), native.c_str()) == 0) {
    if (!sync_folder_of(native)) fail("Writing", native);
    return;
  }
  const int code = errno;
  ::unlink(aside.c_str());
  if (!refused(code)) fail("Writing", native, code);
  rewrite_in_place(native, text, rights);
}

std::string file_target(const std::string& path) {
  // A link is followed: the file behind it is the one that is replaced.
  const std::string native = native_path(path);
  std::error_code error;
  if (!std::filesystem::is_symlink(native, error)) return native;
  const auto target = std::filesystem::weakly_canonical(native, error);
  return error ? native : target.string();
}

// The names in a folder whose entries are `wanted`.
template <class Wanted>
std::vector<std::string> names_in(const std::string& native, Wanted wanted) {
  std::vector<std::string> names;
  std::error_code error;
  std::filesystem::directory_iterator entry(native, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    if (wanted(*entry)) names.push_back(entry->path().filename().string());
  }
  if (error == std::errc::no_such_file_or_directory) {
    throw Fault(base::kPathNotFound, "Listing \"" + native + "\": there is no such folder.");
  }
  if (error) fail("Listing", native, error.value());
  return names;
}

}  // namespace

bool FilesPosix::file_exists(const std::string& path) const {
  std::error_code error;
  return std::filesystem::is_regular_file(native_path(path), error);
}

bool FilesPosix::folder_exists(const std::string& path) const {
  std::error_code error;
  return std::filesystem::is_directory(native_path(path), error);
}

bool FilesPosix::is_link(const std::string& path) const {
  std::string native = native_path(path);
  while (native.size() > 1 && native.ends_with('/'))
    native.pop_back();  // a slash at the end would look behind the link
  std::error_code error;
  return std::filesystem::is_symlink(native, error);
}

std::uint64_t FilesPosix::length(const std::string& path) const {
  std::error_code error;
  const auto size = std::filesystem::file_size(native_path(path), error);
  if (error) fail("Reading", native_path(path), error.value());
  return size;
}

std::string FilesPosix::read(const std::string& path) const {
  const std::string native = native_path(path);
  const Descriptor file(::open(native.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (!file.open()) fail("Reading", native);
  const struct stat status = status_of(file.get(), native);
  if (!S_ISREG(status.st_mode))
    throw Fault("Path/File access error", "\"" + native + "\" is not a plain file.");
  if (static_cast<std::uint64_t>(status.st_size) > kReadLimit) {
    throw Fault("File too large", "\"" + native + "\" is larger than 256 MiB.");
  }
  std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
  std::size_t have = 0;
  while (have < bytes.size()) {
    const ssize_t got = ::read(file.get(), bytes.data() + have, bytes.size() - have);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) fail("Reading", native);
    if (got == 0) break;  // it became shorter meanwhile
    have += static_cast<std::size_t>(got);
  }
  bytes.resize(have);
  return bytes;
}

void FilesPosix::append(const std::string& path, std::string_view text) {
  const std::string native = native_path(path);
  const Descriptor file(::open(native.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600));
  if (!file.open()) fail("Writing", native);
  if (text.empty()) return;
  const off_t before = status_of(file.get(), native).st_size;
  if (write_all(file.get(), text)) return;
  const int code = errno;
  // A part of a line would be read as a line: what was there before is all that stays.
  if (::ftruncate(file.get(), before) != 0) fail("Undoing a part written to", native);
  fail("Writing", native, code);
}

void FilesPosix::append_line(const std::string& path, std::string_view line) {
  const std::string native = native_path(path);
  const bool is_new = !file_exists(path);
  const Descriptor file(::open(native.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC, 0600));
  if (!file.open()) fail("Writing", native);
  const off_t before = status_of(file.get(), native).st_size;
  char last = '\n';
  if (before > 0 && ::pread(file.get(), &last, 1, before - 1) != 1) fail("Reading", native);
  std::string text(last == '\n' ? std::string_view{} : base::kCrLf);
  text.append(line).append(base::kCrLf);
  if (write_all(file.get(), text) && ::fdatasync(file.get()) == 0 && (!is_new || sync_folder_of(native)))
    return;
  const int code = errno;
  if (::ftruncate(file.get(), before) != 0) fail("Undoing a part written to", native);
  fail("Writing", native, code);
}

void FilesPosix::replace(const std::string& path, std::string_view text) {
  write_over(file_target(path), text, Readers::kEverybody);
}

void FilesPosix::save(const std::string& path, std::string_view text, Readers readers) {
  write_over(file_target(path), text, readers);
}

void FilesPosix::copy(const std::string& from, const std::string& to) {
  std::error_code error;
  std::filesystem::copy_file(native_path(from), native_path(to),
                             std::filesystem::copy_options::overwrite_existing, error);
  if (error) fail("Copying", native_path(from), error.value());
}

void FilesPosix::remove(const std::string& path) {
  if (::unlink(native_path(path).c_str()) != 0) fail("Deleting", native_path(path));
}

std::vector<std::string> FilesPosix::list(const std::string& folder) const {
  return names_in(native_path(folder), [](const std::filesystem::directory_entry& entry) {
    std::error_code unreadable;
    return !entry.is_directory(unreadable);
  });
}

std::vector<std::string> FilesPosix::list_folders(const std::string& folder) const {
  return names_in(native_path(folder), [](const std::filesystem::directory_entry& entry) {
    std::error_code unreadable;
    return entry.is_directory(unreadable) && !entry.is_symlink(unreadable);
  });
}

void FilesPosix::make_folder(const std::string& path) {
  if (::mkdir(native_path(path).c_str(), 0700) == 0) return;
  // The system's word for a missing parent is a missing file; here it is the path that is missing.
  if (errno == ENOENT)
    throw Fault(base::kPathNotFound, "Making the folder \"" + native_path(path) +
                                         "\": the folder above it is missing. Run set-up.");
  fail("Making the folder", native_path(path));
}

void FilesPosix::remove_folder(const std::string& path) {
  if (::rmdir(native_path(path).c_str()) != 0) fail("Removing the folder", native_path(path));
}

std::string FilesPosix::native(const std::string& path) const {
  return native_path(path);
}

}  // namespace qvrcom::adapters
