#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "base/fault.h"
#include "platform/components.h"

namespace qvrcom::doubles {

// Components of any name that keep what happens to them, in order: "create NAME", "OPERATION a|b|c" and
// "release NAME". An operation answers what is prepared for it, otherwise "OK".
class RecordingComponents : public platform::Components {
 public:
  std::unique_ptr<platform::Component> create(std::string_view name) override {
    if (unknown.contains(std::string(name)))
      throw base::Fault("Component cannot be created", std::string(name));
    return std::make_unique<Recorder>(*this, std::string(name));
  }

  std::map<std::string, std::optional<std::string>> answers;  // by operation
  std::set<std::string> unknown;                              // names that nothing is registered under
  std::vector<std::string> events;

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
      const auto found = owner_.answers.find(std::string(operation));
      return found == owner_.answers.end() ? "OK" : found->second;
    }

   private:
    RecordingComponents& owner_;
    std::string name_;
  };
};

}  // namespace qvrcom::doubles
