#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace qvrcom::protocol {

// A piece of what passes between the scheduler program and a terminal; the kinds stand in docs/protocol.md.
struct TerminalFrame {
  char kind = 0;
  std::string payload;
  bool operator==(const TerminalFrame&) const = default;
};

inline constexpr std::size_t kTerminalPayloadLimit = 16384;  // bytes

// Kinds. A terminal sends attach, data, window and end; the scheduler all but window.
inline constexpr char kTerminalAttach = 'A';
inline constexpr char kTerminalData = 'D';
inline constexpr char kTerminalWindow = 'W';
inline constexpr char kTerminalEcho = 'O';
inline constexpr char kTerminalCount = 'C';
inline constexpr char kTerminalNotHere = 'N';
inline constexpr char kTerminalTaken = 'T';
inline constexpr char kTerminalEnd = 'E';

// Kind, length in two bytes with the higher first, payload: at most `kTerminalPayloadLimit` bytes of it.
std::string terminal_frame_text(char kind, std::string_view payload);

// Data of any length as as many frames as it takes.
std::string terminal_data_text(std::string_view bytes);

// Cuts a stream of bytes into frames again. It keeps no more than one frame and what was added last.
class TerminalFrameReader {
 public:
  void add(std::string_view bytes) { waiting_.append(bytes); }

  // The next whole frame; nothing when there is none, or none will ever come.
  std::optional<TerminalFrame> next();

  // A frame announced more than the limit; nothing behind it can be read.
  bool damaged() const { return damaged_; }

 private:
  std::string waiting_;
  bool damaged_ = false;
};

}  // namespace qvrcom::protocol
