#include "session/scheduler_link.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "environment/names.h"
#include "platform/trap.h"
#include "protocol/job_lists.h"
#include "protocol/messages.h"

namespace qvrcom::session {
namespace {

constexpr std::chrono::milliseconds kStartTime{1000};

}  // namespace

platform::MessageId SchedulerLink::identifier(Slot slot, const char* name) {
  if (identifiers_[slot] == 0) identifiers_[slot] = parts_.channel.register_message(name);
  return identifiers_[slot];
}

platform::MessageId SchedulerLink::SchedulerMessageId() {
  return identifier(kScheduler, protocol::kSchedulerMessage);
}
platform::MessageId SchedulerLink::RePilotMessageId() {
  return identifier(kRePilot, protocol::kRePilotMessage);
}
platform::MessageId SchedulerLink::SchedulerAnswerMessageId() {
  return identifier(kAnswer, protocol::kSchedulerAnswer);
}

// The program's own words, if it has said any: it has most likely ended with them.
std::string SchedulerLink::why_silent(const std::string& path) const {
  const std::string program = parts_.programs.native(path);
  const std::string words = parts_.programs.said();
  return words.empty() ? program + " was started, but it did not come up in time."
                       : program + " was started, but it did not come up. It says: " + words;
}

platform::WindowHandle SchedulerLink::find_or_start(const char* title, const char* program,
                                                    std::string& reason) {
  if (const auto window = parts_.channel.find_window(title)) return window;
  const std::string path = parts_.folders.GetAppPath() + program;
  reason = parts_.programs.start_hidden(path);
  parts_.clock.sleep(kStartTime);
  const auto window = parts_.channel.find_window(title);
  if (window == 0 && reason.empty()) reason = why_silent(path);
  return window;
}

void SchedulerLink::NotifyScheduler(protocol::SchedulerRequest request) {
  std::string reason;
  const auto window = find_or_start(protocol::kJobPilotTitle, environment::kJobPilotProgram, reason);
  if (request == protocol::SchedulerRequest::kJobsSubmitted) missing_ = false;
  if (window == 0) {
    missing_ = true;
    parts_.ui.show({.text = "SCHEDULER not found!",
                    .title = platform::kSuiteTitle,
                    .detail = reason + " Start JobPilot, then try again."});
    return;
  }
  parts_.channel.post(window, SchedulerMessageId(), 0, static_cast<std::int16_t>(request));
}

void SchedulerLink::NotifyRePilot(protocol::SchedulerRequest request) {
  std::string reason;  // nobody is told: RePilot finds the job when it starts
  const auto window = find_or_start(protocol::kRePilotTitle, environment::kRePilotProgram, reason);
  parts_.channel.post(window, RePilotMessageId(), 0, static_cast<std::int16_t>(request));
}

bool SchedulerLink::scheduler_window_stands() const {
  return parts_.channel.find_window(protocol::kJobPilotTitle) != 0;
}

void SchedulerLink::install(platform::Window& window) {
  previous_ = window.replace_procedure(
      [this](platform::WindowHandle handle, platform::MessageId message, std::uint64_t word,
             std::int64_t value) { return SessionWindowProc(handle, message, word, value); });
}

void SchedulerLink::remove(platform::Window& window) {
  window.replace_procedure(std::exchange(previous_, nullptr));
}

std::int64_t SchedulerLink::SessionWindowProc(platform::WindowHandle window, platform::MessageId message,
                                              std::uint64_t word, std::int64_t value) {
  if (message != SchedulerAnswerMessageId()) return previous_ ? previous_(window, message, word, value) : 0;
  for (const protocol::ResultList& list : protocol::kResultLists) {
    if (!JobListedIn(list.file)) continue;
    base::RunValues& run = parts_.session.run;
    run.SessionStatus = list.status;
    if (!run.AnswerReceived) run.AnsweredAt = parts_.clock.now();  // JobPilot repeats itself
    run.AnswerReceived = true;
    break;
  }
  return 0;
}

bool SchedulerLink::JobListedIn(const std::string& file_name) const {
  const std::string& job = parts_.session.job.JobId;
  if (job.empty()) return false;
  platform::Silence silence;
  return platform::Trap(silence)("JobListedIn", [&] {
    const std::string text =
        parts_.files.read(environment::scheduler_folder(parts_.session.run, parts_.folders) + file_name);
    const auto lines = base::lines_of(text);
    return std::any_of(lines.begin(), lines.end(),
                       [&](std::string_view line) { return base::equals_ignoring_case(line, job); });
  });
}

void SchedulerLink::WaitForScheduler(const std::function<void()>& each_round) {
  base::RunValues& run = parts_.session.run;
  run.AnswerReceived = false;
  while (!run.CancelRequested) {
    each_round();
    parts_.ui.pump_events();
    parts_.clock.sleep(kWaitStep);
    if (run.AnswerReceived) return;
  }
}

}  // namespace qvrcom::session
