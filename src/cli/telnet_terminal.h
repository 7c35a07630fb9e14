#pragma once

#include <QSocketNotifier>
#include <QTimer>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "cli/console.h"
#include "platform/terminal.h"

namespace qvrcom::cli {

// The user's end of a device's Telnet session: what is typed goes to the device, what the device says to
// standard output. On a terminal Ctrl-] leaves. Where the input ends, as a pipe does, the session is left
// once the device has taken it all and been silent for two seconds. A session that is ended before the
// device has taken everything says how much it took.
class TelnetTerminal {
 public:
  // `keyboard` is the descriptor that is typed at.
  TelnetTerminal(Console& console, platform::Terminal& terminal, int keyboard);
  ~TelnetTerminal();  // leaves
  TelnetTerminal(const TelnetTerminal&) = delete;
  TelnetTerminal& operator=(const TelnetTerminal&) = delete;

  // Waits for the job's session while events are pumped, and attaches to it. Once.
  void attach(const std::string& job_name);

  // Ends the session, when it has not ended by itself, and gives the user's terminal back.
  void leave();

 private:
  class RawTerminal;

  void attached();
  void hear(std::string_view bytes);
  void ended(const std::string& why);
  void take_typed();
  void take_piece();
  void take(std::string_view typed);
  void tick();
  void tell_size();
  void give_back();
  std::string unsent_text() const;

  Console& console_;
  platform::Terminal& terminal_;
  int keyboard_;
  std::unique_ptr<RawTerminal> raw_;
  std::unique_ptr<QSocketNotifier> typed_;
  QTimer ticks_;
  std::uint64_t sent_ = 0;  // bytes typed
  int silent_ticks_ = 0;
  bool input_ended_ = false;
  bool device_echoes_ = false;
  std::pair<std::uint16_t, std::uint16_t> size_;  // columns and rows as told last
};

}  // namespace qvrcom::cli
