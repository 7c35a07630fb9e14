#include "adapters/byte_source_posix.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

#include "adapters/plain_file.h"
#include "adapters/posix_fault.h"

namespace qvrcom::adapters {
namespace {

constexpr const char* kReading = "Reading";

class OpenFile : public csv::ByteSource {
 public:
  explicit OpenFile(std::string native)
      : native_(std::move(native)), file_(open_plain(kReading, native_, O_RDONLY, Links::kFollowed)) {
    struct stat status {};
    if (::fstat(file_.get(), &status) != 0) fail(kReading, native_);
    size_ = static_cast<std::uint64_t>(status.st_size);
  }

  std::uint64_t size() const override { return size_; }

  std::size_t read(std::uint64_t offset, std::span<char> into) override {
    std::size_t done = 0;
    while (done < into.size()) {
      const ssize_t got =
          ::pread(file_.get(), into.data() + done, into.size() - done, static_cast<off_t>(offset + done));
      if (got < 0 && errno == EINTR) continue;
      if (got < 0) fail(kReading, native_);
      if (got == 0) break;
      done += static_cast<std::size_t>(got);
    }
    return done;
  }

 private:
  std::string native_;
  Descriptor file_;
  std::uint64_t size_ = 0;
};

}  // namespace

csv::FileStamp ByteSourcesPosix::stamp(const std::string& path) const {
  const std::string native = native_path(path);
  struct stat status {};
  if (::stat(native.c_str(), &status) != 0) fail(kReading, native);
  return {static_cast<std::uint64_t>(status.st_size),
          std::int64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec, status.st_ino};
}

std::unique_ptr<csv::ByteSource> ByteSourcesPosix::open(const std::string& path) const {
  return std::make_unique<OpenFile>(native_path(path));
}

}  // namespace qvrcom::adapters
