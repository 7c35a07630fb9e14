#pragma once

#include <sys/types.h>

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

// False when a write fails; errno says why.
bool write_all(int file, std::string_view bytes);

// Makes a folder and those above it, where they are missing; nobody but their owner may write to them. False
// when it is no folder then.
bool make_folders(const std::string& native);

}  // namespace qvrcom::adapters
