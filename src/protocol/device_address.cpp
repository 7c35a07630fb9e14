#include "protocol/device_address.h"

#include <algorithm>

#include "base/fault.h"
#include "base/text.h"

namespace qvrcom::protocol {
namespace {

constexpr std::size_t kLongest = 300;

// An address, or why the text is none.
struct Reading {
  DeviceAddress address;
  const char* problem = nullptr;
};

bool is_host_character(char c) {
  return base::is_letter_or_digit(c) || c == '.' || c == '-' || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool is_ipv6_character(char c) {
  return is_host_character(c) || c == ':' || c == '%';
}

const char* read_port(std::string_view digits, std::uint16_t& port) {
  if (digits.empty() || digits.size() > 5 || !std::all_of(digits.begin(), digits.end(), base::is_digit))
    return "has a port that is no number";
  unsigned value = 0;
  for (const char digit : digits)
    value = value * 10 + static_cast<unsigned>(digit - '0');
  if (value == 0 || value > 65535) return "has a port that is not between 1 and 65535";
  port = static_cast<std::uint16_t>(value);
  return nullptr;
}

// ":ftp" or ":ftp:telnet"; nothing leaves the usual ports.
const char* read_ports(std::string_view text, DeviceAddress& address) {
  if (text.empty()) return nullptr;
  const auto pieces = base::split(text, ":");
  if (!pieces[0].empty() || pieces.size() > 3) return "has more than a host and two ports";
  const char* problem = read_port(pieces[1], address.ftp_port);
  if (problem == nullptr && pieces.size() == 3) problem = read_port(pieces[2], address.telnet_port);
  return problem;
}

Reading read(std::string_view whole) {
  Reading reading;
  if (whole.size() > kLongest) return {{}, "is too long"};
  const bool bracketed = whole.starts_with('[');
  const std::size_t edge = bracketed ? 1 : 0;
  const auto host_end = bracketed ? whole.find(']') : std::min(whole.find(':'), whole.size());
  if (host_end == std::string_view::npos) return {{}, "lacks its closing bracket"};

  const std::string_view host = whole.substr(edge, host_end - edge);
  if (host.empty()) return {{}, "names no host"};
  if (!std::all_of(host.begin(), host.end(), bracketed ? is_ipv6_character : is_host_character))
    return {{}, "has a character that no host name has"};
  reading.address.host = host;
  reading.problem = read_ports(whole.substr(host_end + edge), reading.address);
  return reading;
}

}  // namespace

DeviceAddress parse_device_address(std::string_view text) {
  const Reading reading = read(base::trim(text));
  if (reading.problem != nullptr) {
    throw base::Fault("Address cannot be read",
                      "The address \"" + std::string(text.substr(0, kLongest)) + "\" " + reading.problem +
                          ". Write host, host:ftp or host:ftp:telnet, an IPv6 host in brackets.");
  }
  return reading.address;
}

std::string device_address_problem(std::string_view text) {
  const Reading reading = read(base::trim(text));
  return reading.problem == nullptr ? std::string{} : reading.problem;
}

}  // namespace qvrcom::protocol
