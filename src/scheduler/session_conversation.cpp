#include "scheduler/session_conversation.h"

#include <array>
#include <chrono>

#include "scheduler/fault_of.h"
#include "scheduler/script_blocks.h"

namespace qvrcom::scheduler {
namespace {

using MonotonicClock = std::chrono::steady_clock;

constexpr int kMostLoginsAgain = 8;      // in one session, whether they succeed or not
constexpr std::size_t kMostNamed = 200;  // accounts in the summary

class Conversation {
 public:
  Conversation(const SessionPlan& plan, const SchedulerSettings& settings, DeviceLine& line,
               platform::Dialer& dialer, const SessionTelling& telling)
      : plan_(plan),
        settings_(settings),
        line_(line),
        dialer_(dialer),
        telling_(telling),
        blocks_(blocks_of(plan.steps)),
        forgiving_(forgives_blocks(plan.description, blocks_)) {}

  void hold() {
    dial_up(plan_, settings_, dialer_, line_.cancelled(), telling_);
    telling_.begin("Connecting to " + place_);
    began_ = MonotonicClock::now();
    line_.connect(settings_.limits).login(plan_.login);
    telling_.done("Logged in at " + place_ + " as " + plan_.login.user + ".");
    for (const ScriptBlock& block : blocks_)
      take(block);
    if (line_.current().alive()) leave();
    if (!skipped_.empty()) sum_up();
    // An error would have the fetched files thrown away, and of what was deleted they are all there is.
    if (login_trouble_ && !deleted_) throw *login_trouble_;
  }

 private:
  using StepRoutine = void (Conversation::*)(const SessionPlan::Step&);
  static const std::array<StepRoutine, 4> kSteps;  // by CommandKind

  void take(const ScriptBlock& block) {
    const bool forgiven = forgiving_ && !block.account.empty();
    const auto fault = fault_of([&] {
      if (forgiven && !line_.current().alive()) log_in_again();
      for (std::size_t i = block.first; i < block.end; ++i)
        (this->*kSteps[static_cast<std::size_t>(plan_.steps[i].kind)])(plan_.steps[i]);
    });
    if (!fault) return;
    if (!forgiven || line_.cancelled()) throw *fault;
    skipped_.push_back(readable(block.account));
    if (skipped_.size() <= kMostNamed)
      telling_.done(skipped_.back() + " is skipped. " + telling_.reason(*fault));
  }

  void log_in_again() {
    using std::chrono::milliseconds;
    const auto spent = std::chrono::duration_cast<milliseconds>(MonotonicClock::now() - began_);
    platform::DeviceLimits limits = settings_.limits;
    limits.session -= spent;
    if (logins_again_ == kMostLoginsAgain || limits.session <= milliseconds(0)) {
      login_trouble_.emplace(
          "The connection was lost, and the session is too long or too often cut to log in again");
      throw *login_trouble_;
    }
    ++logins_again_;
    telling_.begin("Connecting again to " + place_);
    if (login_trouble_) line_.pause(settings_.login_pause);
    login_trouble_ = fault_of([&] { line_.connect(limits).login(plan_.login); });
    if (login_trouble_) throw *login_trouble_;
    telling_.done("The connection was lost; logged in again at " + place_ + " as " + plan_.login.user + ".");
  }

  void account(const SessionPlan::Step& step) {
    telling_.begin("Selecting " + step.remote);
    line_.current().account(step.remote);
    telling_.done("Selected " + step.remote + ".");
  }
  void get(const SessionPlan::Step& step) {
    telling_.begin("Fetching " + step.remote, step.hint);
    telling_.done("Fetched " + step.remote + ", " +
                  bytes_text(line_.current().get(step.remote, step.local, 0)) + ".");
  }
  void put(const SessionPlan::Step& step) {
    telling_.begin("Sending " + step.remote, step.hint);
    telling_.done("Sent " + step.remote + ", " + bytes_text(line_.current().put(step.local, step.remote)) +
                  ".");
  }
  void remove(const SessionPlan::Step& step) {
    telling_.begin("Deleting " + step.remote);
    deleted_ = true;  // even when no answer comes
    line_.current().remove(step.remote);
    telling_.done("Deleted " + step.remote + ".");
  }

  // Everything asked for is done: a device that takes leave badly spoils nothing.
  void leave() {
    telling_.begin("Leaving the device");
    const auto fault = fault_of([this] { line_.current().close(); });
    if (fault) telling_.done("The device did not take leave properly. " + telling_.reason(*fault));
  }

  void sum_up() {
    std::string names;
    for (std::size_t i = 0; i < skipped_.size() && i < kMostNamed; ++i)
      names += (i == 0 ? "" : ", ") + skipped_[i];
    if (skipped_.size() > kMostNamed)
      names += " and " + std::to_string(skipped_.size() - kMostNamed) + " more";
    const std::size_t all = blocks_.size() - (blocks_.front().account.empty() ? 1 : 0);
    telling_.note(std::to_string(all - skipped_.size()) + " of " + std::to_string(all) +
                  " partitions are done; skipped: " + names + ".");
  }

  const SessionPlan& plan_;
  const SchedulerSettings& settings_;
  DeviceLine& line_;
  platform::Dialer& dialer_;
  const SessionTelling& telling_;
  const std::vector<ScriptBlock> blocks_;
  const bool forgiving_;
  const std::string place_ = plan_.login.host + " port " + std::to_string(plan_.login.port);
  MonotonicClock::time_point began_;
  std::vector<std::string> skipped_;  // accounts
  int logins_again_ = 0;
  std::optional<base::Fault> login_trouble_;  // of the last try to log in again
  bool deleted_ = false;
};

const std::array<Conversation::StepRoutine, 4> Conversation::kSteps{
    &Conversation::account, &Conversation::get, &Conversation::put, &Conversation::remove};

}  // namespace

SessionReport hold_conversation(const SessionPlan& plan, const SchedulerSettings& settings, DeviceLine& line,
                                platform::Dialer& dialer, const std::function<void(SessionEvent)>& tell) {
  const SessionTelling telling(plan, tell);
  Conversation conversation(plan, settings, line, dialer, telling);
  const auto fault = fault_of([&] { conversation.hold(); });
  return telling.report(fault, line.cancelled());
}

}  // namespace qvrcom::scheduler
