#include "scheduler/run_telling.h"

#include "base/text.h"

namespace qvrcom::scheduler {
namespace {

constexpr std::size_t kLongestReason = 400;  // bytes

}  // namespace

std::string readable(std::string text) {
  const bool utf8 = base::is_utf8(text);
  for (char& c : text) {
    const auto code = static_cast<unsigned char>(c);
    if (code < 0x20 || code == 0x7F) c = ' ';
    if (!utf8 && code >= 0x80) c = '?';
  }
  if (text.size() <= kLongestReason) return text;
  std::size_t end = kLongestReason;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
    --end;
  return text.substr(0, end) + " ...";
}

std::string RunTelling::reason(const base::Fault& fault) {
  const std::string& what = fault.description();
  const std::string& tried = fault.detail();
  std::string text = what;
  if (!tried.empty()) text = tried.ends_with('.') ? what + ": " + tried : tried + ": " + what;
  if (!text.ends_with('.')) text += '.';
  return readable(std::move(text));
}

RunResult RunTelling::report(const std::optional<base::Fault>& fault, bool cancelled) {
  if (!fault) return {};
  if (cancelled) return {Ending::kCancelled, "The session was stopped in the scheduler."};
  return {Ending::kError, reason(*fault)};
}

}  // namespace qvrcom::scheduler
