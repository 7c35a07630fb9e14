#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

struct telnet_t;
union telnet_event_t;

namespace qvrcom::adapters {

// The user's side of the Telnet protocol, by libtelnet: bytes of the device in, what its terminal is to show
// out, and the other way round. It lets the device echo and suppress go-ahead, tells it the window's size and
// that the terminal is a VT100; every other option is declined.
class TelnetProtocol {
 public:
  struct Outlets {
    std::function<void(std::string_view)> to_device;
    std::function<void(std::string_view)> to_terminal;
    std::function<void(bool)> echo;  // whether the device echoes from now on
  };

  explicit TelnetProtocol(Outlets outlets);
  ~TelnetProtocol();
  TelnetProtocol(const TelnetProtocol&) = delete;
  TelnetProtocol& operator=(const TelnetProtocol&) = delete;

  // Fault when the device breaks the protocol or compresses what nobody asked it to.
  void received(std::string_view bytes);

  // A line end, CR, LF or both, goes as CR LF.
  void typed(std::string_view bytes);

  void resized(std::uint16_t columns, std::uint16_t rows);

 private:
  static void on_event(telnet_t* telnet, telnet_event_t* event, void* self);
  void handle(const telnet_event_t& event);
  void option_on(unsigned char option, bool asked_of_us);
  void show(std::string_view bytes);
  void tell_size();

  const Outlets outlets_;
  telnet_t* const telnet_;
  std::string trouble_;        // why the stream cannot be read on
  bool shown_return_ = false;  // the last byte shown was a CR
  bool typed_return_ = false;  // the last byte typed was a CR
  bool size_wanted_ = false;   // the device asked for the window's size
  std::uint16_t columns_ = 80;
  std::uint16_t rows_ = 24;
};

}  // namespace qvrcom::adapters
