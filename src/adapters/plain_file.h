#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

// Plain files by native path, as the machine's own calls give them.
namespace qvrcom::adapters {

// An open file's number; closed with the object.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  ~Descriptor();
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }

  int get() const { return number_; }
  bool open() const { return number_ >= 0; }

 private:
  int number_;
};

// A link in place of one of the suite's own files is somebody's mistake or trap. What the user named is taken
// where the link leads.
enum class Links { kRefused, kFollowed };

// Opens a plain file with open(2)'s `flags`; it is not handed to started programs. Fault, told as `what` that
// could not be done, when it cannot be opened, and when a link (unless followed), a pipe, a device or a
// folder lies there; a pipe's other end is not waited for. `mode` is that of a file made by O_CREAT.
Descriptor open_plain(const char* what, const std::string& native, int flags, Links links = Links::kRefused,
                      mode_t mode = 0);

// Fault when something lies there that `open_plain` would refuse; nothing at all is fine.
void need_plain(const std::string& native);

// Up to `room` bytes, 0 at the end; negative when the read fails, errno says why.
ssize_t read_some(int file, char* buffer, std::size_t room);

// False when a write fails; errno says why.
bool write_all(int file, std::string_view bytes);

// Makes a folder and those above it, where they are missing; nobody but their owner may write to them. False
// when it is no folder then.
bool make_folders(const std::string& native);

// So that a new name outlasts a power failure: the device may be told next to delete what was fetched. A file
// system that cannot do this for folders keeps its names in its own way. False with errno. `path` is native.
bool sync_folder_of(const std::string& path);

// A file that is being received: it grows under the name + ".part" and gets its own name once it is whole.
// Neither name is followed where it is a link. Without `keep` the part is removed again.
class PartFile {
 public:
  // Fault when the part cannot be made. `path` is native.
  explicit PartFile(std::string path);
  ~PartFile();
  PartFile(const PartFile&) = delete;
  PartFile& operator=(const PartFile&) = delete;

  void write(std::string_view bytes);  // Fault "Disk full" and the like
  void keep();
  std::uint64_t length() const { return length_; }

 private:
  std::string path_;
  std::string part_;
  Descriptor file_;
  std::uint64_t length_ = 0;
};

// A plain file that is being sent. Fault when it is missing, a link or no plain file. `path` is native.
class SourceFile {
 public:
  explicit SourceFile(const std::string& path);

  // Up to `room` bytes, 0 at the end. Fault when the file cannot be read on.
  std::size_t read(char* buffer, std::size_t room);
  std::uint64_t length() const { return length_; }

 private:
  std::string path_;
  Descriptor file_;
  std::uint64_t length_ = 0;
};

}  // namespace qvrcom::adapters
