#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "base/session_values.h"
#include "environment/files_and_folders.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/message_channel.h"
#include "platform/programs.h"
#include "platform/user_interface.h"
#include "protocol/messages.h"

namespace qvrcom::session {

struct SchedulerLinkParts {
  base::Session& session;
  platform::UserInterface& ui;
  platform::Clock& clock;
  const platform::Files& files;
  platform::Programs& programs;
  platform::MessageChannel& channel;
  const environment::FilesAndFolders& folders;
};

// The thin protocol towards JobPilot and RePilot: requests by registered message, the answer to the session
// dialog's window, the outcome of a job from three files. docs/protocol.md tells both sides.
class SchedulerLink {
 public:
  static constexpr std::chrono::milliseconds kWaitStep{100};

  explicit SchedulerLink(const SchedulerLinkParts& parts) : parts_(parts) {}

  // Registered on first use, then the same as long as this object lives.
  platform::MessageId SchedulerMessageId();
  platform::MessageId RePilotMessageId();
  platform::MessageId SchedulerAnswerMessageId();

  // Posts to JobPilot, which is started hidden when it is not there and gets one second to come up. When it
  // does not, the box "SCHEDULER not found!" is shown and the request is dropped.
  void NotifyScheduler(protocol::SchedulerRequest request);

  // As above for RePilot, but without a box: a request to a missing RePilot is posted to no window.
  void NotifyRePilot(protocol::SchedulerRequest request);

  // Whether a request to JobPilot was dropped since jobs were submitted last, that one included.
  bool scheduler_missing() const { return missing_; }
  bool scheduler_window_stands() const;

  // Puts SessionWindowProc in front of the window's procedure; the second puts the saved one back.
  void install(platform::Window& window);
  void remove(platform::Window& window);

  // Settles SessionStatus when the answer comes and the job stands in one of the three files. The answer is
  // never passed on; every other message is.
  std::int64_t SessionWindowProc(platform::WindowHandle window, platform::MessageId message,
                                 std::uint64_t word, std::int64_t value);

  // Whether a line of this file of the scheduler folder is the current job, letter case ignored. A file that
  // is not there or cannot be read lists nothing.
  bool JobListedIn(const std::string& file_name) const;

  // Lets events run and sleeps kWaitStep, round after round, until the answer has come or Cancel was pressed.
  // An answer that came before is not counted. `each_round` runs first in each round.
  void WaitForScheduler(const std::function<void()>& each_round = [] {});

 private:
  enum Slot { kScheduler, kRePilot, kAnswer, kSlots };
  platform::MessageId identifier(Slot slot, const char* name);
  std::string why_silent(const std::string& path) const;
  platform::WindowHandle find_or_start(const char* title, const char* program, std::string& reason);

  SchedulerLinkParts parts_;
  std::array<platform::MessageId, kSlots> identifiers_{};  // 0 is not registered yet
  platform::WindowProcedure previous_;
  bool missing_ = false;
};

}  // namespace qvrcom::session
