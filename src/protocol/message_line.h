#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qvrcom::protocol {

// A posted message as programs on one PC hand it to each other, docs/protocol.md.
struct MessageLine {
  std::string name;  // 1 to 64 printable ASCII characters, no blank
  std::uint32_t word = 0;
  std::int32_t value = 0;
  bool operator==(const MessageLine&) const = default;
};

inline constexpr std::size_t kMessageLineLimit = 128;  // bytes, the line end included

// "NAME WORD VALUE" without its line end; nothing when it is none.
std::optional<MessageLine> read_message_line(std::string_view text);

// With its line end.
std::string message_line_text(const MessageLine& line);

}  // namespace qvrcom::protocol
