#pragma once

#include <atomic>
#include <chrono>
#include <string>

namespace qvrcom::platform {

// Brings up a dial-up connection by running a program of the user's choice.
class Dialer {
 public:
  virtual ~Dialer() = default;

  // Runs `program` (a native path) with the connection's name and the number as its two arguments, without a
  // shell, and waits for it. Fault when it cannot be started, ends with another code than 0 or takes longer
  // than `limit`; SessionCancelled once `cancelled` is set.
  virtual void dial(const std::string& program, const std::string& connection, const std::string& number,
                    std::chrono::milliseconds limit, const std::atomic<bool>& cancelled) = 0;
};

}  // namespace qvrcom::platform
