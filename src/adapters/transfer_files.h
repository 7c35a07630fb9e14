#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qvrcom::adapters {

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
  int file_ = -1;
  std::uint64_t length_ = 0;
};

// A plain file that is being sent. Fault when it is missing, a link or no plain file. `path` is native.
class SourceFile {
 public:
  explicit SourceFile(const std::string& path);
  ~SourceFile();
  SourceFile(const SourceFile&) = delete;
  SourceFile& operator=(const SourceFile&) = delete;

  // Up to `room` bytes, 0 at the end. Fault when the file cannot be read on.
  std::size_t read(char* buffer, std::size_t room);
  std::uint64_t length() const { return length_; }

 private:
  std::string path_;
  int file_ = -1;
  std::uint64_t length_ = 0;
};

}  // namespace qvrcom::adapters
