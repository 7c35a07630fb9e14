#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/message_channel.h"

namespace qvrcom::adapters {

// The suite's registered messages over local sockets: one socket a titled window, in a folder that is open to
// its owner alone. The wire is told in docs/protocol.md.
class MessageChannelLocal : public platform::MessageChannel {
 public:
  // Native paths. The run folder holds the sockets; one whose path would be too long for a socket address
  // lies in the runtime folder under a hash. Either is made, open to its owner alone, when it is used.
  MessageChannelLocal(std::string run_folder, std::string runtime_folder);
  ~MessageChannelLocal() override;

  platform::MessageId register_message(const std::string& name) override;
  platform::WindowHandle find_window(const std::string& title) override;
  void post(platform::WindowHandle window, platform::MessageId message, std::uint64_t word,
            std::int64_t value) override;
  std::unique_ptr<platform::Window> open_window(const std::string& title,
                                                platform::WindowProcedure procedure) override;

  // Lines that reached this channel's windows and were no message.
  std::uint64_t dropped() const;

 private:
  struct Names;  // shared with the windows, whichever goes first
  class LocalWindow;

  std::string run_folder_;
  std::string runtime_folder_;
  std::shared_ptr<Names> names_;
};

}  // namespace qvrcom::adapters
