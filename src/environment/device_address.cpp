#include "environment/device_address.h"

#include <algorithm>

#include "base/fault.h"
#include "base/text.h"

namespace qvrcom::environment {
namespace {

constexpr std::size_t kLongest = 300;

[[noreturn]] void refuse(std::string_view text, const char* reason) {
  throw base::Fault("Address cannot be read",
                    "\"" + std::string(text.substr(0, kLongest)) + "\" " + reason +
                        " Write host, host:ftp or host:ftp:telnet, an IPv6 host in brackets.");
}

std::uint16_t port_of(std::string_view text, std::string_view digits) {
  unsigned port = 0;
  const bool all_digits =
      std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; });
  if (digits.empty() || digits.size() > 5 || !all_digits) refuse(text, "has a port that is no number.");
  for (const char digit : digits)
    port = port * 10 + static_cast<unsigned>(digit - '0');
  if (port == 0 || port > 65535) refuse(text, "has a port that is not between 1 and 65535.");
  return static_cast<std::uint16_t>(port);
}

bool is_host_character(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '.' || c == '-' ||
         c == '_' || static_cast<unsigned char>(c) >= 0x80;
}

bool is_ipv6_character(char c) {
  return is_host_character(c) || c == ':' || c == '%';
}

}  // namespace

DeviceAddress parse_device_address(std::string_view text) {
  const std::string_view whole = base::trim(text);
  if (whole.size() > kLongest) refuse(whole, "is too long.");
  const bool bracketed = whole.starts_with('[');
  const auto host_end = bracketed ? whole.find(']') : std::min(whole.find(':'), whole.size());
  if (host_end == std::string_view::npos) refuse(whole, "lacks its closing bracket.");

  DeviceAddress address;
  address.host = whole.substr(bracketed ? 1 : 0, host_end - (bracketed ? 1 : 0));
  if (address.host.empty()) refuse(whole, "names no host.");
  if (!std::all_of(address.host.begin(), address.host.end(),
                   bracketed ? is_ipv6_character : is_host_character))
    refuse(whole, "has a character that no host name has.");

  const std::string_view ports = whole.substr(host_end + (bracketed ? 1 : 0));
  if (ports.empty()) return address;
  const auto pieces = base::split(ports, ":");
  if (!pieces[0].empty() || pieces.size() > 3) refuse(whole, "has more than a host and two ports.");
  address.ftp_port = port_of(whole, pieces[1]);
  if (pieces.size() == 3) address.telnet_port = port_of(whole, pieces[2]);
  return address;
}

}  // namespace qvrcom::environment
