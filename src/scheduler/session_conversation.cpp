#include "scheduler/session_conversation.h"

#include <array>

#include "base/text.h"
#include "scheduler/fault_of.h"

namespace qvrcom::scheduler {
namespace {

constexpr std::size_t kLongestReason = 400;  // bytes

// What a device says may be anything: one line of readable characters is what is left of it.
std::string readable(std::string text) {
  const bool utf8 = base::is_utf8(text);
  for (char& c : text) {
    const auto code = static_cast<unsigned char>(c);
    if (code < 0x20 || code == 0x7F) c = ' ';
    if (!utf8 && code >= 0x80) c = '?';
  }
  if (text.size() <= kLongestReason) return text;
  std::size_t end = kLongestReason;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
    --end;
  return text.substr(0, end) + " ...";
}

std::string without(std::string text, const std::string& secret) {
  if (secret.empty()) return text;
  constexpr std::string_view kMask = "***";
  for (auto at = text.find(secret); at != std::string::npos; at = text.find(secret, at + kMask.size()))
    text.replace(at, secret.size(), kMask);
  return text;
}

std::string bytes_text(std::uint64_t count) {
  return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

class Conversation {
 public:
  Conversation(const SessionPlan& plan, const SchedulerSettings& settings, platform::DeviceConnection& device,
               platform::Dialer& dialer, const std::atomic<bool>& cancelled,
               const std::function<void(SessionEvent)>& tell)
      : plan_(plan),
        settings_(settings),
        device_(device),
        dialer_(dialer),
        cancelled_(cancelled),
        tell_(tell) {}

  void hold() {
    if (plan_.dial) dial(*plan_.dial);
    const std::string place = plan_.login.host + " port " + std::to_string(plan_.login.port);
    begin("Connecting to " + place);
    device_.login(plan_.login);
    done("Logged in at " + place + " as " + plan_.login.user + ".");
    for (const SessionPlan::Step& step : plan_.steps)
      (this->*kSteps[static_cast<std::size_t>(step.kind)])(step);
    leave();
  }

  // `fault` as a full sentence; a detail that is one already stands behind.
  std::string reason(const base::Fault& fault) const {
    const std::string& what = fault.description();
    const std::string& tried = fault.detail();
    std::string text = what;
    if (!tried.empty()) text = tried.ends_with('.') ? what + ": " + tried : tried + ": " + what;
    if (!text.ends_with('.')) text += '.';
    return readable(without(std::move(text), plan_.login.password));
  }

 private:
  using StepRoutine = void (Conversation::*)(const SessionPlan::Step&);
  static const std::array<StepRoutine, 4> kSteps;  // by CommandKind

  void dial(const SessionPlan::Dial& dial) {
    if (settings_.dial_command.empty())
      throw base::Fault(
          "The site is reached over a dial-up connection, and no dial command is configured "
          "(setting DialCommand of section JobPilot)");
    begin("Dialling " + dial.connection);
    dialer_.dial(settings_.dial_command, dial.connection, dial.number, settings_.dial, cancelled_);
    done("The dial-up connection " + dial.connection + " is up.");
  }

  void account(const SessionPlan::Step& step) {
    begin("Selecting " + step.remote);
    device_.account(step.remote);
    done("Selected " + step.remote + ".");
  }
  void get(const SessionPlan::Step& step) {
    begin("Fetching " + step.remote, step.hint);
    done("Fetched " + step.remote + ", " + bytes_text(device_.get(step.remote, step.local)) + ".");
  }
  void put(const SessionPlan::Step& step) {
    begin("Sending " + step.remote, step.hint);
    done("Sent " + step.remote + ", " + bytes_text(device_.put(step.local, step.remote)) + ".");
  }
  void remove(const SessionPlan::Step& step) {
    begin("Deleting " + step.remote);
    device_.remove(step.remote);
    done("Deleted " + step.remote + ".");
  }

  // Everything asked for is done: a device that takes leave badly spoils nothing.
  void leave() {
    begin("Leaving the device");
    const auto fault = fault_of([this] { device_.close(); });
    if (fault) done("The device did not take leave properly. " + reason(*fault));
  }

  void begin(const std::string& step, std::uint64_t hint = 0) { tell_({{}, readable(step), hint}); }
  void done(const std::string& sentence) { tell_({readable(sentence), {}, 0}); }

  const SessionPlan& plan_;
  const SchedulerSettings& settings_;
  platform::DeviceConnection& device_;
  platform::Dialer& dialer_;
  const std::atomic<bool>& cancelled_;
  const std::function<void(SessionEvent)>& tell_;
};

const std::array<Conversation::StepRoutine, 4> Conversation::kSteps{
    &Conversation::account, &Conversation::get, &Conversation::put, &Conversation::remove};

}  // namespace

SessionReport hold_conversation(const SessionPlan& plan, const SchedulerSettings& settings,
                                platform::DeviceConnection& device, platform::Dialer& dialer,
                                const std::atomic<bool>& cancelled,
                                const std::function<void(SessionEvent)>& tell) {
  Conversation conversation(plan, settings, device, dialer, cancelled, tell);
  const auto fault = fault_of([&] { conversation.hold(); });
  if (!fault) return {};
  if (cancelled) return {Outcome::kCancelled, "The session was stopped in the scheduler."};
  return {Outcome::kError, conversation.reason(*fault)};
}

}  // namespace qvrcom::scheduler
