#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace qvrcom::platform {

using MessageId = std::uint32_t;     // never 0
using WindowHandle = std::uint64_t;  // 0 is no window

// What happens when a message reaches a window: (window, message, word, long) to a result.
using WindowProcedure = std::function<std::int64_t(WindowHandle, MessageId, std::uint64_t, std::int64_t)>;

// A titled window that others can find and post to. It can be found from its making to its destruction.
class Window {
 public:
  virtual ~Window() = default;
  virtual WindowHandle handle() const = 0;
  // Installs `procedure` and gives back the one that was there.
  virtual WindowProcedure replace_procedure(WindowProcedure procedure) = 0;
};

// Registered messages between the suite's programs on one PC.
class MessageChannel {
 public:
  virtual ~MessageChannel() = default;

  // The identifier of a message name: the same for the same name, as long as the program runs.
  virtual MessageId register_message(const std::string& name) = 0;

  // The top-level window with exactly this title, 0 when there is none.
  virtual WindowHandle find_window(const std::string& title) = 0;

  // Posts without waiting; whether it arrives is not known. A post to window 0 goes nowhere.
  virtual void post(WindowHandle window, MessageId message, std::uint64_t word, std::int64_t value) = 0;

  // Opens a window; messages reach its procedure while events are pumped. Fault when the title is taken by
  // a live program.
  virtual std::unique_ptr<Window> open_window(const std::string& title, WindowProcedure procedure) = 0;
};

}  // namespace qvrcom::platform
