#pragma once

#include <ostream>

#include "platform/message.h"

namespace qvrcom::platform {

// What a user sees of a box; the detail has its own place.
inline bool operator==(const Message& left, const Message& right) {
  return left.text == right.text && left.title == right.title && left.icon == right.icon &&
         left.buttons == right.buttons;
}

inline void PrintTo(const Message& message, std::ostream* out) {
  *out << '"' << message.text << "\" titled \"" << message.title << "\" icon "
       << static_cast<int>(message.icon);
}

}  // namespace qvrcom::platform
