#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/device_connection.h"

namespace qvrcom::platform {

struct TerminalLimits {
  std::chrono::milliseconds connect = std::chrono::seconds(30);
  std::chrono::milliseconds attach = std::chrono::seconds(60);   // until a terminal has attached
  std::chrono::milliseconds idle = std::chrono::minutes(10);     // without a byte either way
  std::chrono::milliseconds session = std::chrono::minutes(30);  // from the connection on
};

struct TerminalOrder {
  std::string job_name;  // a terminal attaches to a job
  std::string host;      // a name or an address; IPv6 without brackets
  std::uint16_t port = 23;
  TerminalLimits limits;
};

enum class TerminalStage { kConnected, kAttached };

enum class TerminalEnd { kLeft, kHungUp };  // by the terminal, by the device

struct TerminalTraffic {
  TerminalEnd end = TerminalEnd::kLeft;
  std::uint64_t from_device = 0;  // bytes that the terminal was given
  std::uint64_t to_device = 0;    // bytes that it gave
};

// One Telnet session with a device, relayed to the one terminal that attaches to the job.
class TerminalRelay {
 public:
  virtual ~TerminalRelay() = default;

  // Connects, waits for the terminal and relays until one side ends it; `reached` is called on the way. Fault
  // when the connection cannot be made or breaks, nobody attaches, a limit is reached, or it is cancelled.
  virtual TerminalTraffic hold(const TerminalOrder& order,
                               const std::function<void(TerminalStage)>& reached) = 0;

  // Ends `hold`, now or as soon as it is called. The one member that another thread may call.
  virtual void cancel() = 0;
};

class TerminalRelays {
 public:
  virtual ~TerminalRelays() = default;

  // `progress` is told of the bytes from the device so far, on the thread that holds the session.
  virtual std::unique_ptr<TerminalRelay> make(TransferProgress progress) = 0;
};

}  // namespace qvrcom::platform
