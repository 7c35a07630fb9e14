#pragma once

#include <string>

namespace qvrcom::platform {

class Programs {
 public:
  virtual ~Programs() = default;

  // Starts a program without a window and without waiting for it. Answers with an empty text, or with the
  // reason why it could not be started.
  virtual std::string start_hidden(const std::string& path) = 0;

  // The program as this system knows it, for messages.
  virtual std::string native(const std::string& path) const = 0;

  // What the program that was started last has written on its standard error since, in one line; "" when
  // nothing.
  virtual std::string said() const = 0;
};

}  // namespace qvrcom::platform
