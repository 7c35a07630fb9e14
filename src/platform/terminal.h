#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace qvrcom::platform {

// What a terminal hears. Every function is called while events are pumped, none after `ended`; any of them
// may destroy the terminal. An empty one is passed over.
struct TerminalEvents {
  std::function<void()> attached;                      // the session is there; once
  std::function<void(std::string_view bytes)> output;  // what the device shows, for a VT100
  std::function<void(bool device_echoes)> echo;        // whether typed characters come back from the device;
                                                       // at the start they do not
  std::function<void(const std::string& why)> ended;   // a full sentence; once
};

// The user's end of the Telnet session that the scheduler program holds for a job.
class Terminal {
 public:
  virtual ~Terminal() = default;  // leaves

  // Waits for the job's session, as long as it takes, and attaches to it. The session may come late, behind
  // other jobs, or, with another maker's scheduler, never: whoever waits for the job's end then leaves. Once.
  virtual void attach(const std::string& job_name, TerminalEvents events) = 0;

  // Sends what is typed; a line ends in CR, LF or both. Nothing is sent before `attached`.
  virtual void send(std::string_view bytes) = 0;
  // Bytes that `send` took and the device has not; to be kept small. It stands still once the session is
  // over.
  virtual std::size_t unsent() const = 0;

  // The size of the user's window in characters; may be told before `attach`.
  virtual void resize(std::uint16_t columns, std::uint16_t rows) = 0;

  // Ends session and job; no event comes any more.
  virtual void leave() = 0;
};

}  // namespace qvrcom::platform
