#pragma once

#include "platform/user_interface.h"

namespace qvrcom::ui {

// Messages as modal boxes over the window that is active. The text is the message's own; its detail stands
// below it.
class MessageBoxes : public platform::UserInterface {
 public:
  platform::Button show(const platform::Message& message) override;
  void pump_events() override;
};

}  // namespace qvrcom::ui
