#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/programs.h"

namespace qvrcom::doubles {

// Keeps the programs that are started; `answer` is why one could not be.
struct MemoryPrograms : platform::Programs {
  std::string start_hidden(const std::string& path) override {
    started.push_back(path);
    if (on_start) on_start();
    return answer;
  }
  std::string native(const std::string& path) const override { return path; }
  std::string said() const override { return says; }
  std::vector<std::string> started;
  std::function<void()> on_start;
  std::string answer;
  std::string says;
};

}  // namespace qvrcom::doubles
