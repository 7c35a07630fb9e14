#pragma once

#include <string>

namespace qvrcom::platform {

class Programs {
 public:
  virtual ~Programs() = default;

  // Starts a program without a window and without waiting for it. Answers with an empty text, or with the
  // reason why it could not be started.
  virtual std::string start_hidden(const std::string& path) = 0;
};

}  // namespace qvrcom::platform
