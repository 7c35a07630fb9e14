#pragma once

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/fault.h"
#include "platform/message_channel.h"

namespace qvrcom::doubles {

// Windows of one process. A post waits until `deliver` is called, as it waits for a pump of events.
class MemoryChannel : public platform::MessageChannel {
 public:
  struct Post {
    std::string title;  // "" for window 0 and for windows that have gone
    std::string message;
    std::uint64_t word = 0;
    std::int64_t value = 0;
    bool operator==(const Post&) const = default;
  };

  platform::MessageId register_message(const std::string& name) override {
    ++registrations;
    for (std::size_t i = 0; i < names_.size(); ++i) {
      if (names_[i] == name) return static_cast<platform::MessageId>(i + 1);
    }
    names_.push_back(name);
    return static_cast<platform::MessageId>(names_.size());
  }

  platform::WindowHandle find_window(const std::string& title) override {
    ++searches;
    for (const auto& [handle, window] : windows_) {
      if (window->title == title) return handle;
    }
    return 0;
  }

  void post(platform::WindowHandle handle, platform::MessageId message, std::uint64_t word,
            std::int64_t value) override {
    const auto found = windows_.find(handle);
    posts.push_back(
        {found == windows_.end() ? "" : found->second->title, names_.at(message - 1), word, value});
    waiting_.push_back({handle, message, word, value});
  }

  std::unique_ptr<platform::Window> open_window(const std::string& title,
                                                platform::WindowProcedure procedure) override {
    if (find_window(title) != 0) throw base::Fault("Title is taken", title);
    return std::make_unique<MemoryWindow>(*this, title, std::move(procedure));
  }

  // Brings the posts that wait now to their windows.
  void deliver() {
    for (auto messages = std::exchange(waiting_, {}); !messages.empty(); messages.pop_front()) {
      const Waiting& next = messages.front();
      const auto found = windows_.find(next.handle);
      if (found == windows_.end()) continue;
      const auto procedure = found->second->procedure;  // may be replaced inside
      procedure(next.handle, next.message, next.word, next.value);
    }
  }

  std::vector<Post> posts;
  int registrations = 0;
  int searches = 0;

 private:
  struct Waiting {
    platform::WindowHandle handle;
    platform::MessageId message;
    std::uint64_t word;
    std::int64_t value;
  };

  struct MemoryWindow : platform::Window {
    MemoryWindow(MemoryChannel& owner, std::string name, platform::WindowProcedure first)
        : channel(owner), title(std::move(name)), procedure(std::move(first)), number(++owner.last_handle_) {
      channel.windows_[number] = this;
    }
    ~MemoryWindow() override { channel.windows_.erase(number); }
    platform::WindowHandle handle() const override { return number; }
    platform::WindowProcedure replace_procedure(platform::WindowProcedure next) override {
      return std::exchange(procedure, std::move(next));
    }

    MemoryChannel& channel;
    std::string title;
    platform::WindowProcedure procedure;
    platform::WindowHandle number;
  };

  std::vector<std::string> names_;
  std::map<platform::WindowHandle, MemoryWindow*> windows_;
  std::deque<Waiting> waiting_;
  platform::WindowHandle last_handle_ = 0;
};

}  // namespace qvrcom::doubles
