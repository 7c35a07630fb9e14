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

// What stands in a suite path for a character of a file's name that would be taken for something else: this
// mark and a letter. No folder of the suite holds a control character, so no text of the suite's changes.
constexpr char kMark = '\x1A';
constexpr char kBackslash = 'b';
constexpr char kMarkItself = 'm';

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

std::string native_path(const std::string& suite_path) {
  std::string native;
  native.reserve(suite_path.size());
  for (std::size_t at = 0; at < suite_path.size(); ++at) {
    const char next = at + 1 < suite_path.size() ? suite_path[at + 1] : '\0';
    const bool marked = suite_path[at] == kMark && (next == kBackslash || next == kMarkItself);
    if (marked) {
      native += next == kBackslash ? '\\' : kMark;
      ++at;
    } else {
      native += suite_path[at] == '\\' ? '/' : suite_path[at];
    }
  }
  return native;
}

std::string suite_path(const std::string& native_path) {
  std::string suite;
  suite.reserve(native_path.size());
  for (const char c : native_path) {
    if (c == '\\' || c == kMark)
      suite.append({kMark, c == '\\' ? kBackslash : kMarkItself});
    else
      suite += c == '/' ? '\\' : c;
  }
  return suite;
}

}  // namespace qvrcom::adapters
