#pragma once

#include <deque>
#include <functional>
#include <vector>

#include "platform/user_interface.h"

namespace qvrcom::doubles {

// Keeps the messages it is asked to show; answers from `answers`, then with the first button of the box.
class RecordingUserInterface : public platform::UserInterface {
 public:
  platform::Button show(const platform::Message& message) override {
    messages.push_back(message);
    if (!answers.empty()) {
      const platform::Button answer = answers.front();
      answers.pop_front();
      return answer;
    }
    return message.buttons == platform::Buttons::kYesNoCancel ? platform::Button::kYes
                                                              : platform::Button::kOk;
  }
  void pump_events() override {
    ++pumps;
    if (on_pump) on_pump();
  }

  std::vector<std::string> texts() const {
    std::vector<std::string> all;
    for (const platform::Message& message : messages)
      all.push_back(message.text);
    return all;
  }

  std::vector<platform::Message> messages;
  std::deque<platform::Button> answers;
  std::function<void()> on_pump;
  int pumps = 0;
};

}  // namespace qvrcom::doubles
