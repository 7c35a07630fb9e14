#include "protocol/message_line.h"

#include <algorithm>
#include <charconv>

#include "base/text.h"

namespace qvrcom::protocol {
namespace {

constexpr std::size_t kLongestName = 64;

bool is_name(std::string_view name) {
  return !name.empty() && name.size() <= kLongestName &&
         std::all_of(name.begin(), name.end(), [](char c) { return c > ' ' && c < '\x7F'; });
}

template <class Number>
std::optional<Number> whole_number(std::string_view text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return number;
}

}  // namespace

std::optional<MessageLine> read_message_line(std::string_view text) {
  if (text.size() >= kMessageLineLimit) return std::nullopt;
  const auto fields = base::split(text, " ");
  if (fields.size() != 3 || !is_name(fields[0])) return std::nullopt;
  const auto word = whole_number<std::uint32_t>(fields[1]);
  const auto value = whole_number<std::int32_t>(fields[2]);
  if (!word || !value) return std::nullopt;
  return MessageLine{std::string(fields[0]), *word, *value};
}

std::string message_line_text(const MessageLine& line) {
  return line.name + ' ' + std::to_string(line.word) + ' ' + std::to_string(line.value) + '\n';
}

}  // namespace qvrcom::protocol
