#include "adapters/ftp_reply.h"

#include <algorithm>
#include <charconv>

#include "base/text.h"

namespace qvrcom::adapters {
namespace {

constexpr std::ptrdiff_t kShortestMasked = 4;  // characters
constexpr std::string_view kMask = "***";

bool is_word_byte(char c) {
  return base::is_digit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
         static_cast<unsigned char>(c) >= 0x80;
}

// Whether a word goes on from the byte before `at` to the one there.
bool inside_word(std::string_view text, std::size_t at) {
  return at > 0 && at < text.size() && is_word_byte(text[at - 1]) && is_word_byte(text[at]);
}

}  // namespace

bool ends_reply(std::string_view line) {
  return line.size() > 3 && std::all_of(line.begin(), line.begin() + 3, base::is_digit) && line[3] == ' ';
}

bool is_kind(std::string_view reply, char digit) {
  return !reply.empty() && reply[0] == digit;
}

bool refuses(std::string_view reply) {
  return is_kind(reply, '4') || is_kind(reply, '5');
}

std::optional<std::uint64_t> size_in(std::string_view reply) {
  if (!reply.starts_with("213 ")) return std::nullopt;
  const std::string_view digits = base::trim(reply.substr(4));
  const char* const end = digits.data() + digits.size();
  std::uint64_t size = 0;
  const auto [stop, error] = std::from_chars(digits.data(), end, size);
  if (error != std::errc{} || stop != end) return std::nullopt;
  return size;
}

std::string masked(std::string text, std::string_view secret) {
  if (secret.empty()) return text;
  const std::string upper = base::to_upper(text);
  const std::string word = base::to_upper(secret);
  std::string result;
  std::size_t done = 0;
  for (auto at = upper.find(word); at != std::string::npos; at = upper.find(word, at)) {
    const std::size_t end = at + word.size();
    if (inside_word(upper, at) || inside_word(upper, end)) {
      ++at;
      continue;
    }
    result.append(text, done, at - done).append(kMask);
    at = done = end;
  }
  return result.append(text, done);
}

bool too_short_to_mask(std::string_view secret) {
  const auto characters = std::count_if(
      secret.begin(), secret.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; });
  return !secret.empty() && characters < kShortestMasked;
}

void StepReplies::hear(std::string_view line) {
  while (!line.empty() && (line.back() == '\r' || line.back() == '\n'))
    line.remove_suffix(1);
  if (!ends_reply(line)) return;
  last_ = line;
  if (stray_.empty() && !belongs(line)) stray_ = line;
  opened_ |= is_kind(line, '1');
}

// More is asked for in a login alone, and the data of a transfer follow once.
bool StepReplies::belongs(std::string_view reply) const {
  if (is_kind(reply, '3')) return step_ == Step::kLogin;
  if (is_kind(reply, '1')) return step_ == Step::kTransfer && !opened_;
  return is_kind(reply, '2') || refuses(reply);
}

}  // namespace qvrcom::adapters
