#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>

namespace qvrcom::adapters {

// The socket of an FTP session's control connection, which libcurl reads and writes. All members but
// `hang_up` belong to the session's thread.
class FtpControlLine {
 public:
  void take(int socket);

  // Closes any socket; when it is this one there is none any more. 0, or -1 with errno.
  int close(int socket);

  bool open() const { return socket_ >= 0; }

  // So many bytes have been read from it and passed on.
  void heard(std::size_t bytes) { heard_ += bytes; }

  // Whether the device has said nothing that was not passed on: not a farewell, nor what would be taken for
  // the answer to the next command.
  bool silent() const;

  // The beginning of what waits unread; "" when nothing does.
  std::string unread() const;

  // For any thread: whatever is being waited for on it, or sent as a parting word, fails at once.
  void hang_up();

 private:
  std::mutex mutex_;  // so that nobody shuts down a number that has been closed and given away
  int socket_ = -1;   // changed under the mutex
  std::uint64_t heard_ = 0;
};

}  // namespace qvrcom::adapters
