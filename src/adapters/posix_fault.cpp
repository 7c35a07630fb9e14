#include "adapters/posix_fault.h"

#include <array>
#include <cstring>

#include "base/fault.h"

namespace qvrcom::adapters {
namespace {

using base::Fault;

struct ErrorText {
  int code;
  const char* description;
  const char* advice;
};

constexpr std::array<ErrorText, 12> kErrorTexts{{
    {ENOENT, base::kFileNotFound, "Check that it is still there."},
    {ENOTDIR, base::kPathNotFound, "A part of its path is not a folder."},
    {EACCES, base::kPermissionDenied, "Ask for the right to use it."},
    {EPERM, base::kPermissionDenied, "Ask for the right to use it."},
    {EROFS, base::kPermissionDenied, "The file system is read-only."},
    {ENOSPC, base::kDiskFull, "Free some space and try again."},
    {EDQUOT, base::kDiskFull, "Your share of the disk is used up. Free some space and try again."},
    {EFBIG, "File too large", "The file system takes no file of this size."},
    {EEXIST, "File already exists", "Remove it or choose another name."},
    {ENOTEMPTY, "Path/File access error", "The folder is not empty."},
    {ENAMETOOLONG, "Bad file name", "The name is too long."},
    {EIO, "Device I/O error", "Check the disk."},
}};

}  // namespace

void fail(const char* what, const std::string& native, int code) {
  for (const ErrorText& text : kErrorTexts) {
    if (text.code == code) {
      throw Fault(text.description,
                  std::string(what) + " \"" + native + "\": " + std::strerror(code) + ". " + text.advice);
    }
  }
  throw Fault("Path/File access error",
              std::string(what) + " \"" + native + "\": " + std::strerror(code) + ".");
}

}  // namespace qvrcom::adapters
