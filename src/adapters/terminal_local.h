#pragma once

#include <memory>
#include <string>

#include "platform/terminal.h"

namespace qvrcom::adapters {

// A terminal on the socket of the scheduler program's Telnet session, driven by the program's events.
class TerminalLocal : public platform::Terminal {
 public:
  // Native paths, as for MessageChannelLocal.
  TerminalLocal(std::string run_folder, std::string runtime_folder);
  ~TerminalLocal() override;

  void attach(const std::string& job_name, platform::TerminalEvents events) override;
  void send(std::string_view bytes) override;
  std::size_t unsent() const override;
  void resize(std::uint16_t columns, std::uint16_t rows) override;
  void leave() override;

 private:
  class Wire;  // deleted by the event loop: the terminal may go while it delivers

  Wire* wire_;
};

}  // namespace qvrcom::adapters
