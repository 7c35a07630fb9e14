#pragma once

#include <string>

#include "platform/terminal_relay.h"

namespace qvrcom::adapters {

// The name of the socket that a terminal attaches to, for `local_socket_path`.
inline constexpr const char* kTerminalSocketName = "JOBPILOT terminal";

// Telnet over TCP, relayed over a local socket that is there as long as the session. The wire is told in
// docs/protocol.md.
class TerminalRelaysLocal : public platform::TerminalRelays {
 public:
  // Native paths, as for MessageChannelLocal.
  TerminalRelaysLocal(std::string run_folder, std::string runtime_folder)
      : run_folder_(std::move(run_folder)), runtime_folder_(std::move(runtime_folder)) {}

  std::unique_ptr<platform::TerminalRelay> make(platform::TransferProgress progress) override;

 private:
  std::string run_folder_;
  std::string runtime_folder_;
};

}  // namespace qvrcom::adapters
