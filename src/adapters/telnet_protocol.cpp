#include "adapters/telnet_protocol.h"

#include <libtelnet.h>

#include <algorithm>
#include <array>
#include <utility>

#include "base/fault.h"

namespace qvrcom::adapters {
namespace {

constexpr const char* kTerminalType = "VT100";
constexpr std::size_t kPiece = 1024;  // bytes that the library gets at once

constexpr std::array<telnet_telopt_t, 5> kOptions{{{TELNET_TELOPT_ECHO, TELNET_WONT, TELNET_DO},
                                                   {TELNET_TELOPT_SGA, TELNET_WILL, TELNET_DO},
                                                   {TELNET_TELOPT_NAWS, TELNET_WILL, TELNET_DONT},
                                                   {TELNET_TELOPT_TTYPE, TELNET_WILL, TELNET_DONT},
                                                   {-1, 0, 0}}};

}  // namespace

TelnetProtocol::TelnetProtocol(Outlets outlets)
    : outlets_(std::move(outlets)), telnet_(telnet_init(kOptions.data(), &on_event, 0, this)) {
  if (telnet_ == nullptr) throw base::Fault("The Telnet library cannot be started");
}

TelnetProtocol::~TelnetProtocol() {
  telnet_free(telnet_);
}

void TelnetProtocol::received(std::string_view bytes) {
  for (std::size_t at = 0; at < bytes.size() && trouble_.empty(); at += kPiece) {
    const std::string_view piece = bytes.substr(at, kPiece);
    telnet_recv(telnet_, piece.data(), piece.size());
  }
  if (!trouble_.empty()) throw base::Fault("The device does not keep to the Telnet protocol", trouble_);
}

void TelnetProtocol::typed(std::string_view bytes) {
  std::string line_ends;
  for (const char c : bytes) {
    const bool second_half = c == '\n' && typed_return_;
    typed_return_ = c == '\r';
    if (second_half) continue;
    if (c == '\r' || c == '\n')
      line_ends += "\r\n";
    else
      line_ends += c;
  }
  telnet_send(telnet_, line_ends.data(), line_ends.size());
}

void TelnetProtocol::resized(std::uint16_t columns, std::uint16_t rows) {
  columns_ = columns;
  rows_ = rows;
  if (size_wanted_) tell_size();
}

void TelnetProtocol::tell_size() {
  const auto byte = [](unsigned value) { return static_cast<char>(value & 0xFFU); };
  const std::array<char, 4> size{byte(columns_ >> 8U), byte(columns_), byte(rows_ >> 8U), byte(rows_)};
  telnet_subnegotiation(telnet_, TELNET_TELOPT_NAWS, size.data(), size.size());
}

void TelnetProtocol::on_event(telnet_t*, telnet_event_t* event, void* self) {
  static_cast<TelnetProtocol*>(self)->handle(*event);
}

// After trouble the library may still have events of the piece at hand; they count no more.
void TelnetProtocol::handle(const telnet_event_t& event) {
  if (!trouble_.empty()) return;
  switch (event.type) {
    case TELNET_EV_DATA:
      return show({event.data.buffer, event.data.size});
    case TELNET_EV_SEND:
      return outlets_.to_device({event.data.buffer, event.data.size});
    case TELNET_EV_WILL:
    case TELNET_EV_DO:
      return option_on(event.neg.telopt, event.type == TELNET_EV_DO);
    case TELNET_EV_WONT:
      if (event.neg.telopt == TELNET_TELOPT_ECHO) outlets_.echo(false);
      return;
    case TELNET_EV_DONT:
      if (event.neg.telopt == TELNET_TELOPT_NAWS) size_wanted_ = false;
      return;
    case TELNET_EV_TTYPE:
      if (event.ttype.cmd == TELNET_TTYPE_SEND) telnet_ttype_is(telnet_, kTerminalType);
      return;
    case TELNET_EV_COMPRESS:
      trouble_ = "It compresses what it says, which nobody asked for.";
      return;
    case TELNET_EV_ERROR:
      trouble_ = event.error.msg;
      return;
    default:
      return;  // commands and reports that a terminal has no use for
  }
}

void TelnetProtocol::option_on(unsigned char option, bool asked_of_us) {
  if (!asked_of_us && option == TELNET_TELOPT_ECHO) outlets_.echo(true);
  if (!asked_of_us || option != TELNET_TELOPT_NAWS) return;
  size_wanted_ = true;
  tell_size();
}

// On the wire a CR that begins no new line is followed by a NUL.
void TelnetProtocol::show(std::string_view bytes) {
  std::string shown;
  for (const char c : bytes) {
    if (c != '\0' || !shown_return_) shown += c;
    shown_return_ = c == '\r';
  }
  if (!shown.empty()) outlets_.to_terminal(shown);
}

}  // namespace qvrcom::adapters
