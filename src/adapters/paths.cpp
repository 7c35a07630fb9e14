#include "adapters/paths.h"

namespace qvrcom::adapters {
namespace {

// What stands in a suite path for a character of a file's name that would be taken for something else: this
// mark and a letter. No folder of the suite holds a control character, so no text of the suite's changes.
constexpr char kMark = '\x1A';
constexpr char kBackslash = 'b';
constexpr char kMarkItself = 'm';

}  // namespace

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
