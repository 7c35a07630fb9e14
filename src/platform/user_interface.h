#pragma once

#include "platform/message.h"

namespace qvrcom::platform {

class UserInterface {
 public:
  virtual ~UserInterface() = default;

  // Shows a modal message and answers with the button that ended it.
  virtual Button show(const Message& message) = 0;

  // Lets the events that are waiting run once. The Cancel button may be among them: nothing that the caller
  // stands on is destroyed inside.
  virtual void pump_events() = 0;
};

// Drops every box: for a fault that is an answer in itself.
struct Silence : UserInterface {
  Button show(const Message&) override { return Button::kOk; }
  void pump_events() override {}
};

}  // namespace qvrcom::platform
