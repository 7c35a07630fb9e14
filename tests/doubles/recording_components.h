#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/fault.h"
#include "platform/components.h"

namespace qvrcom::doubles {

// Components of any name that keep what happens to them, in order: "create NAME", "OPERATION a|b|c" and
// "release NAME". A call answers what is prepared for its beginning, otherwise what is usual.
class RecordingComponents : public platform::Components {
 public:
  std::unique_ptr<platform::Component> create(std::string_view name) override {
    if (missing) throw base::Fault("Component cannot be created", std::string(name));
    return std::make_unique<Recorder>(*this, std::string(name));
  }

  // The events without the comings and goings.
  std::vector<std::string> calls() const {
    std::vector<std::string> all = events;
    std::erase_if(all,
                  [](const auto& one) { return one.starts_with("create ") || one.starts_with("release "); });
    return all;
  }

  std::map<std::string, std::optional<std::string>, std::greater<>> answers;  // the longer one goes first
  std::function<std::string(std::string_view operation, std::span<const std::string> arguments)> usual =
      [](auto, auto) { return "OK"; };
  std::vector<std::string> events;
  bool missing = false;

 private:
  class Recorder : public platform::Component {
   public:
    Recorder(RecordingComponents& owner, std::string name) : owner_(owner), name_(std::move(name)) {
      owner_.events.push_back("create " + name_);
    }
    ~Recorder() override { owner_.events.push_back("release " + name_); }
    std::optional<std::string> call(std::string_view operation,
                                    std::span<const std::string> arguments) override {
      std::string event(operation);
      for (const std::string& argument : arguments)
        event += (&argument == arguments.data() ? " " : "|") + argument;
      owner_.events.push_back(event);
      for (const auto& [begin, answer] : owner_.answers) {
        if (event.starts_with(begin) && (event + " ").find_first_of(" |", begin.size()) == begin.size())
          return answer;
      }
      return owner_.usual(operation, arguments);
    }

   private:
    RecordingComponents& owner_;
    std::string name_;
  };
};

}  // namespace qvrcom::doubles
