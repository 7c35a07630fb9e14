#pragma once

#include <string>
#include <string_view>

#include "base/session_values.h"
#include "environment/files_and_folders.h"
#include "platform/files.h"
#include "platform/user_interface.h"

namespace qvrcom::session {

// What to do about a session that failed for this reason, as its log tells it.
struct Advice {
  const char* text;         // a sentence; "" when only the log can help
  bool about_site = false;  // the site's entry in the site book may be wrong
};
const Advice& advice_for(std::string_view reason);

// The boxes of a program with a user. One that says that the session at hand failed or was cancelled gets the
// reason as its detail, and what to do next; all others are passed on as they are.
class ReasonedBoxes : public platform::UserInterface {
 public:
  struct Parts {
    platform::UserInterface& boxes;
    const platform::Files& files;
    const environment::FilesAndFolders& folders;
    const base::JobValues& job;
    std::string edit_site;  // how this program opens a site's entry; a sentence
  };
  explicit ReasonedBoxes(Parts parts) : parts_(std::move(parts)) {}

  platform::Button show(const platform::Message& message) override;
  void pump_events() override { parts_.boxes.pump_events(); }

  // Of the session at hand; "" when its job's log tells none.
  std::string reason() const;

 private:
  std::string detail_of(const std::string& reason) const;

  Parts parts_;
};

}  // namespace qvrcom::session
