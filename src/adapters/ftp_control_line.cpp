#include "adapters/ftp_control_line.h"

#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <optional>

namespace qvrcom::adapters {
namespace {

constexpr std::size_t kLongestUnread = 500;  // bytes

// Bytes that have come in on a connection so far, read or not; nothing where the system does not count them.
std::optional<std::uint64_t> bytes_received(int socket) {
  tcp_info info{};
  socklen_t size = sizeof info;
  if (::getsockopt(socket, IPPROTO_TCP, TCP_INFO, &info, &size) != 0) return std::nullopt;
  if (size < offsetof(tcp_info, tcpi_bytes_received) + sizeof info.tcpi_bytes_received) return std::nullopt;
  return info.tcpi_bytes_received;
}

}  // namespace

void FtpControlLine::take(int socket) {
  const std::lock_guard lock(mutex_);
  socket_ = socket;
  heard_ = 0;
}

int FtpControlLine::close(int socket) {
  const std::lock_guard lock(mutex_);
  if (socket_ == socket) socket_ = -1;
  return ::close(socket);
}

bool FtpControlLine::silent() const {
  char byte = 0;
  const bool nothing = ::recv(socket_, &byte, 1, MSG_PEEK | MSG_DONTWAIT) < 0;
  if (!nothing || (errno != EAGAIN && errno != EWOULDBLOCK)) return false;
  // It may have been read already, together with the reply before, and kept back.
  return bytes_received(socket_).value_or(heard_) == heard_;
}

std::string FtpControlLine::unread() const {
  std::array<char, kLongestUnread> words{};
  const ssize_t length = ::recv(socket_, words.data(), words.size(), MSG_PEEK | MSG_DONTWAIT);
  return {words.data(), length > 0 ? static_cast<std::size_t>(length) : 0};
}

void FtpControlLine::hang_up() {
  const std::lock_guard lock(mutex_);
  if (open()) ::shutdown(socket_, SHUT_RDWR);
}

}  // namespace qvrcom::adapters
