#include "adapters/files_posix.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <functional>

#include "adapters/plain_file.h"
#include "adapters/posix_fault.h"
#include "base/fault.h"
#include "base/text.h"

namespace qvrcom::adapters {
namespace {

using base::Fault;
using platform::Readers;

constexpr const char* kReading = "Reading";
constexpr const char* kWriting = "Writing";

struct stat status_of(int file, const std::string& native) {
  struct stat status {};
  if (::fstat(file, &status) != 0) fail(kReading, native);
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

// What a file is to hold.
struct Content {
  off_t length = 0;                          // in bytes, as far as it is known
  std::function<bool(int file)> write_into;  // from where the file stands; false with errno
};

// Room is made before a byte of the old content goes: a full disk loses nothing.
void rewrite_in_place(const std::string& native, const Content& content, const Rights& rights) {
  const Descriptor file = open_plain(kWriting, native, O_WRONLY | O_CREAT, Links::kRefused, rights.mode);
  const off_t before = status_of(file.get(), native).st_size;
  const int no_room = content.length > before ? ::posix_fallocate(file.get(), 0, content.length) : 0;
  if (no_room != 0) {
    if (::ftruncate(file.get(), before) != 0) fail("Undoing a part written to", native);
    fail(kWriting, native, no_room);
  }
  const bool written =
      (!rights.exact || ::fchmod(file.get(), rights.mode) == 0) && content.write_into(file.get()) &&
      ::ftruncate(file.get(), ::lseek(file.get(), 0, SEEK_CUR)) == 0 && ::fdatasync(file.get()) == 0;
  if (!written) fail(kWriting, native);
}

// ".NAME.PID.new" beside the target.
struct AsideNames {
  explicit AsideNames(const std::string& target)
      : folder(target.substr(0, target.rfind('/') + 1)), before('.' + target.substr(folder.size()) + '.') {}
  std::string own() const { return (folder + before + std::to_string(::getpid())).append(kAfter); }
  // Whether a program wrote `name` that is no more.
  bool orphaned(const std::string& name) const {
    if (!name.starts_with(before) || !name.ends_with(kAfter)) return false;
    const std::string number = name.substr(before.size(), name.size() - before.size() - kAfter.size());
    pid_t process = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), process);
    return error == std::errc() && end == number.data() + number.size() && process > 0 &&
           ::kill(process, 0) != 0 && errno == ESRCH;
  }

  static constexpr std::string_view kAfter = ".new";
  std::string folder;
  std::string before;
};

// What programs left that were killed while they wrote this target. A folder that cannot be listed keeps it.
void sweep(const AsideNames& names) {
  std::error_code error;
  std::filesystem::directory_iterator entry(names.folder.empty() ? "." : names.folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    if (names.orphaned(entry->path().filename().string())) ::unlink(entry->path().c_str());
  }
}

bool refused(int code) {
  return code == EACCES || code == EPERM || code == EBUSY || code == EXDEV || code == ENAMETOOLONG;
}

// Writes a new file beside the target. False when the folder takes no new file.
bool write_aside(const std::string& aside, const std::string& target, const Content& content,
                 const Rights& rights) {
  ::unlink(aside.c_str());  // left behind by a program of the same number that was killed
  const mode_t first = rights.exact ? 0600 : rights.mode;
  const Descriptor file(::open(aside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, first));
  if (!file.open()) {
    if (refused(errno)) return false;
    fail(kWriting, target);
  }
  const bool written = content.write_into(file.get()) &&
                       (!rights.exact || ::fchmod(file.get(), rights.mode) == 0) &&
                       ::fdatasync(file.get()) == 0;
  if (written) return true;
  const int code = errno;
  ::unlink(aside.c_str());
  fail(kWriting, target, code);
}

void write_over(const std::string& native, Readers readers, const Content& content) {
  need_plain(native);
  const Rights rights(native, readers);
  const AsideNames names(native);
  sweep(names);
  const std::string aside = names.own();
  if (!write_aside(aside, native, content, rights)) return rewrite_in_place(native, content, rights);
  if (std::rename(aside.c_str(), native.c_str()) == 0) {
    if (!sync_folder_of(native)) fail(kWriting, native);
    return;
  }
  const int code = errno;
  ::unlink(aside.c_str());
  if (!refused(code)) fail(kWriting, native, code);
  rewrite_in_place(native, content, rights);
}

Content text_of(std::string_view text) {
  return {static_cast<off_t>(text.size()), [text](int file) { return write_all(file, text); }};
}

bool copy_all(int from, int to) {
  std::array<char, 65536> bytes;
  ::lseek(from, 0, SEEK_SET);
  while (true) {
    const ssize_t got = read_some(from, bytes.data(), bytes.size());
    if (got <= 0) return got == 0;
    if (!write_all(to, {bytes.data(), static_cast<std::size_t>(got)})) return false;
  }
}

// Where a link leads; the path itself when it is none.
std::string behind_link(const std::string& native) {
  std::error_code error;
  if (!std::filesystem::is_symlink(native, error)) return native;
  const auto target = std::filesystem::canonical(native, error);
  if (!error) return target.string();
  throw Fault(base::kPathNotFound, '"' + native + "\" is a link that leads nowhere: " + error.message() +
                                       ". Remove it, or make the file that it leads to.");
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

std::string read_whole(const std::string& native, Links links) {
  const Descriptor file = open_plain(kReading, native, O_RDONLY, links);
  const struct stat status = status_of(file.get(), native);
  if (static_cast<std::uint64_t>(status.st_size) > platform::Files::kReadLimit)
    throw Fault("File too large", "\"" + native + "\" is larger than 256 MiB.");
  std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
  std::size_t have = 0;
  while (have < bytes.size()) {
    const ssize_t got = read_some(file.get(), bytes.data() + have, bytes.size() - have);
    if (got < 0) fail(kReading, native);
    if (got == 0) break;  // it became shorter meanwhile
    have += static_cast<std::size_t>(got);
  }
  bytes.resize(have);
  return bytes;
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

bool FilesPosix::is_taken(const std::string& path) const {
  struct stat status {};
  return ::lstat(native_path(path).c_str(), &status) == 0 || errno != ENOENT;
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
  if (error) fail(kReading, native_path(path), error.value());
  return size;
}

std::string FilesPosix::read(const std::string& path) const {
  return read_whole(native_path(path), Links::kRefused);
}

std::string FilesPosix::load(const std::string& path) const {
  return read_whole(native_path(path), Links::kFollowed);
}

void FilesPosix::append(const std::string& path, std::string_view text) {
  const std::string native = native_path(path);
  const Descriptor file = open_plain(kWriting, native, O_WRONLY | O_APPEND | O_CREAT, Links::kRefused, 0600);
  if (text.empty()) return;
  const off_t before = status_of(file.get(), native).st_size;
  if (write_all(file.get(), text)) return;
  const int code = errno;
  // A part of a line would be read as a line: what was there before is all that stays.
  if (::ftruncate(file.get(), before) != 0) fail("Undoing a part written to", native);
  fail(kWriting, native, code);
}

void FilesPosix::append_line(const std::string& path, std::string_view line) {
  const std::string native = native_path(path);
  const bool is_new = !file_exists(path);
  const Descriptor file = open_plain(kWriting, native, O_RDWR | O_APPEND | O_CREAT, Links::kRefused, 0600);
  const off_t before = status_of(file.get(), native).st_size;
  char last = '\n';
  if (before > 0 && ::pread(file.get(), &last, 1, before - 1) != 1) fail(kReading, native);
  std::string text(last == '\n' ? std::string_view{} : base::kCrLf);
  text.append(line).append(base::kCrLf);
  if (write_all(file.get(), text) && ::fdatasync(file.get()) == 0 && (!is_new || sync_folder_of(native)))
    return;
  const int code = errno;
  if (::ftruncate(file.get(), before) != 0) fail("Undoing a part written to", native);
  fail(kWriting, native, code);
}

void FilesPosix::replace(const std::string& path, std::string_view text) {
  write_over(native_path(path), Readers::kEverybody, text_of(text));
}

void FilesPosix::save(const std::string& path, std::string_view text, Readers readers) {
  write_over(behind_link(native_path(path)), readers, text_of(text));
}

void FilesPosix::copy(const std::string& from, const std::string& to) {
  const Descriptor source = open_plain("Copying", native_path(from), O_RDONLY, Links::kFollowed);
  write_over(native_path(to), Readers::kEverybody,
             {status_of(source.get(), native_path(from)).st_size,
              [&](int file) { return copy_all(source.get(), file); }});
}

void FilesPosix::remove(const std::string& path) {
  if (::unlink(native_path(path).c_str()) != 0) fail("Deleting", native_path(path));
}

std::vector<std::string> FilesPosix::list(const std::string& folder) const {
  return names_in(native_path(folder), [](const std::filesystem::directory_entry& entry) {
    std::error_code unreadable;
    return std::filesystem::is_regular_file(entry.symlink_status(unreadable));
  });
}

std::vector<std::string> FilesPosix::list_folders(const std::string& folder) const {
  return names_in(native_path(folder), [](const std::filesystem::directory_entry& entry) {
    std::error_code unreadable;
    return std::filesystem::is_directory(entry.symlink_status(unreadable));
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
  if (::rmdir(native_path(path).c_str()) == 0) return;
  if (errno != ENOTEMPTY) fail("Removing the folder", native_path(path));
  std::string names;
  for (const std::string& name : names_in(native_path(path), [](const auto&) { return true; }))
    names += (names.empty() ? "\"" : ", \"") + name + "\"";
  throw Fault("Path/File access error",
              "Removing the folder \"" + native_path(path) + "\": it still holds " + names + ".");
}

std::string FilesPosix::native(const std::string& path) const {
  return native_path(path);
}

std::string FilesPosix::from_native(const std::string& path) const {
  std::error_code error;
  const auto absolute = std::filesystem::absolute(path, error);
  return suite_path(error ? path : absolute.string());
}

}  // namespace qvrcom::adapters
