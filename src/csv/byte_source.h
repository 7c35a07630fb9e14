#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace qvrcom::csv {

// Bytes with random access: one opened file, or a text in memory.
class ByteSource {
 public:
  virtual ~ByteSource() = default;

  // As it was when the source was opened.
  virtual std::uint64_t size() const = 0;

  // Answers with how many bytes it put into `into`: all of them, or fewer where the file ends.
  // Fault when the medium fails.
  virtual std::size_t read(std::uint64_t offset, std::span<char> into) = 0;
};

// Two equal stamps of one path mean that its content has not changed.
struct FileStamp {
  std::uint64_t size = 0;
  std::int64_t modified = 0;   // in the file system's finest unit
  std::uint64_t identity = 0;  // differs for a file that was renamed over the old one

  bool operator==(const FileStamp&) const = default;
};

// Opens files by path, suite or native. Both operations throw a Fault whose description is the system's
// short text and whose detail names the file.
class ByteSources {
 public:
  virtual ~ByteSources() = default;
  virtual FileStamp stamp(const std::string& path) const = 0;
  virtual std::unique_ptr<ByteSource> open(const std::string& path) const = 0;
};

}  // namespace qvrcom::csv
