#include "scheduler/run_conversation.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <set>

#include "base/fault.h"
#include "scheduler/job_reports.h"
#include "scheduler/run_plan.h"

namespace qvrcom::scheduler {
namespace {

using protocol::CommandKind;
using protocol::ReportWord;
using MonotonicClock = std::chrono::steady_clock;

constexpr int kMostLoginsAgain = 8;      // in one session, whether they succeed or not
constexpr std::size_t kMostNamed = 200;  // accounts in the summary

// "1 byte", "20 bytes"
std::string bytes_text(std::uint64_t count) {
  return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

// Brings up the plan's dial-up connection, if it has one. Fault when that fails.
void dial_up(const RunPlan& plan, const SchedulerSettings& settings, platform::Dialer& dialer,
             const std::atomic<bool>& cancelled, const RunTelling& telling) {
  if (!plan.dial) return;
  if (settings.dial_command.empty())
    throw base::Fault(
        "The site is reached over a dial-up connection, and no dial command is configured "
        "(setting DialCommand of section JobPilot)");
  telling.begin("Dialling " + plan.dial->connection);
  dialer.dial(settings.dial_command, plan.dial->connection, plan.dial->number, settings.dial, cancelled);
  telling.done("The dial-up connection " + plan.dial->connection + " is up.");
}

class Conversation {
 public:
  Conversation(const RunPlan& plan, const SchedulerSettings& settings, DeviceLine& line,
               platform::Dialer& dialer, platform::Files& files, const RunTelling& telling)
      : plan_(plan),
        settings_(settings),
        line_(line),
        dialer_(dialer),
        files_(files),
        telling_(telling),
        report_(files, plan.folder),
        blocks_(blocks_of(plan.steps)),
        forgiving_(forgives_blocks(plan.description, blocks_)) {}

  RunResult hold() {
    const auto fault = base::fault_of([this] { converse(); });
    RunResult report = RunTelling::report(fault, line_.cancelled());
    if (fault && report.ending == Ending::kError && !told_) fail(*fault);
    end_report(report.ending);
    return report;
  }

 private:
  using Step = RunPlan::Step;
  using StepRoutine = void (Conversation::*)(const Step&);
  static const std::array<StepRoutine, 4> kSteps;  // by CommandKind

  void converse() {
    report_.begin();
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

  void take(const ScriptBlock& block) {
    const bool forgiven = forgiving_ && !block.account.empty();
    account_ = block.account;
    last_delete_ = last_delete_of(block);
    const auto fault = base::fault_of([&] {
      need_no_failure_before();
      if (forgiven && !line_.current().alive()) log_in_again();
      for (const Step* step = begin_of(block); step != end_of(block); ++step) {
        running_ = step;
        (this->*kSteps[static_cast<std::size_t>(step->kind)])(*step);
      }
    });
    if (fault && !line_.cancelled()) fail(*fault);
    running_ = nullptr;
    if (!fault) return;
    if (report_trouble_) throw *report_trouble_;
    const bool is_local = fault->description() == base::kDiskFull;  // no other partition would fare better
    if (!forgiven || line_.cancelled() || report_.broken() || is_local) throw *fault;
    failed_.insert(block.account);
    skipped_.push_back(readable(block.account));
    if (skipped_.size() <= kMostNamed)
      telling_.done(skipped_.back() + " is skipped. " + telling_.reason(*fault));
  }

  const Step* begin_of(const ScriptBlock& block) const { return plan_.steps.data() + block.first; }
  const Step* end_of(const ScriptBlock& block) const { return plan_.steps.data() + block.end; }

  // The last step that deletes something and is taken only when all of this block before it has succeeded;
  // nullptr when there is none. Where the device's own lines fail, nothing of the script is taken any more.
  const Step* last_delete_of(const ScriptBlock& block) const {
    const Step* step = block.account.empty() ? plan_.steps.data() + plan_.steps.size() : end_of(block);
    while (step != begin_of(block)) {
      if ((--step)->kind == CommandKind::kDelete) return step;
    }
    return nullptr;
  }

  // A script may come back to an account.
  void need_no_failure_before() const {
    if (last_delete_ != nullptr && failed_.contains(account_))
      throw base::Fault("It has failed before in this session, and nothing of it is deleted");
  }

  // Into the report, on which step of which account the session has stumbled.
  void fail(const base::Fault& fault) {
    told_ = true;
    const bool of_file = running_ != nullptr && running_->kind != CommandKind::kAccount;
    if (report_.begun() && !report_.broken())
      report_trouble_ = base::fault_of([&] {
        report_.write({ReportWord::kFailed,
                       account_,
                       of_file ? running_->remote : std::string{},
                       {},
                       RunTelling::reason(fault)});
      });
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
    login_trouble_ = base::fault_of([&] { line_.connect(limits).login(plan_.login); });
    if (login_trouble_) throw *login_trouble_;
    telling_.done("The connection was lost; logged in again at " + place_ + " as " + plan_.login.user + ".");
  }

  void account(const Step& step) {
    telling_.begin("Selecting " + step.remote);
    line_.current().account(step.remote);
    telling_.done("Selected " + step.remote + ".");
  }
  void get(const Step& step) {
    telling_.begin("Fetching " + step.remote, step.hint);
    if (report_.changed() && files_.file_exists(step.local))
      throw base::Fault("The device has been changed, and " + files_.native(step.local) +
                            " is there already: it is not overwritten",
                        "Fetching " + step.remote);
    const std::uint64_t length = fetch(step);
    note(ReportWord::kFetched, step);
    telling_.done("Fetched " + step.remote + ", " + bytes_text(length) + ".");
  }
  std::uint64_t fetch(const Step& step) {
    const bool is_deleted_then = last_delete_ != nullptr && &step < last_delete_;
    std::uint64_t least = is_deleted_then ? 1 : 0;  // of nothing, all would be deleted
    std::uint64_t length = 0;
    const auto get = [&] { length = line_.current().get(step.remote, step.local, least); };
    if (const auto fault = base::fault_of_kind<platform::IncompleteFile>(get)) {
      telling_.done(RunTelling::reason(*fault) + " It is fetched once more.");
      if (is_deleted_then) least = fault->least;  // the device need not say it again
      get();
    }
    return length;
  }
  void put(const Step& step) {
    telling_.begin("Sending " + step.remote, step.hint);
    note(ReportWord::kStoring, step);
    const std::uint64_t length = line_.current().put(step.local, step.remote);
    note(ReportWord::kStored, step);
    telling_.done("Sent " + step.remote + ", " + bytes_text(length) + ".");
  }
  void remove(const Step& step) {
    telling_.begin("Deleting " + step.remote);
    note(ReportWord::kDeleting, step);
    deleted_ = true;  // even when no answer comes
    line_.current().remove(step.remote);
    note(ReportWord::kDeleted, step);
    telling_.done("Deleted " + step.remote + ".");
  }

  void note(ReportWord word, const Step& step) {
    report_.write({word, account_, step.remote, step.local.substr(step.local.rfind('\\') + 1), {}});
  }

  // Whatever the session was worth does not depend on this last line.
  void end_report(Ending ending) {
    if (!report_.begun()) return;
    const auto fault = base::fault_of([&] {
      report_.write({ReportWord::kEnded, {}, {}, {}, protocol::result_list(ending).report_word});
    });
    if (fault) telling_.done("The report has no last line. " + RunTelling::reason(*fault));
  }

  // Everything asked for is done: a device that takes leave badly spoils nothing.
  void leave() {
    telling_.begin("Leaving the device");
    const auto fault = base::fault_of([this] { line_.current().close(); });
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

  const RunPlan& plan_;
  const SchedulerSettings& settings_;
  DeviceLine& line_;
  platform::Dialer& dialer_;
  platform::Files& files_;
  const RunTelling& telling_;
  ReportWriter report_;
  const std::vector<ScriptBlock> blocks_;
  const bool forgiving_;
  const std::string place_ = plan_.login.host + " port " + std::to_string(plan_.login.port);
  MonotonicClock::time_point began_;
  std::string account_;                // of the block that is being taken
  const Step* last_delete_ = nullptr;  // likewise, see `last_delete_of`
  const Step* running_ = nullptr;
  std::optional<base::Fault> report_trouble_;  // of telling a fault
  bool told_ = false;                          // the report has its fault
  std::set<std::string> failed_;               // accounts
  std::vector<std::string> skipped_;           // likewise, in their order and readable
  int logins_again_ = 0;
  std::optional<base::Fault> login_trouble_;  // of the last try to log in again
  bool deleted_ = false;
};

const std::array<Conversation::StepRoutine, 4> Conversation::kSteps{
    &Conversation::account, &Conversation::get, &Conversation::put, &Conversation::remove};

platform::TerminalOrder order_of(const RunPlan& plan, const SchedulerSettings& settings) {
  return {plan.job_name,
          plan.login.host,
          plan.telnet_port,
          {settings.limits.connect, settings.attach, settings.terminal_idle, settings.limits.session}};
}

void tell_stage(platform::TerminalStage stage, const std::string& place, const RunTelling& telling) {
  if (stage == platform::TerminalStage::kConnected) {
    telling.done("Connected to " + place + ".");
    telling.begin("Waiting for a terminal");
  } else {
    telling.done("A terminal has attached.");
    telling.begin("Terminal attached");
  }
}

std::string end_sentence(const platform::TerminalTraffic& traffic) {
  const std::string who = traffic.end == platform::TerminalEnd::kLeft ? "terminal" : "device";
  return "The " + who + " ended the Telnet session; " + bytes_text(traffic.from_device) +
         " came from the device and " + bytes_text(traffic.to_device) + " from the terminal.";
}

}  // namespace

RunResult hold_conversation(const RunPlan& plan, const SchedulerSettings& settings, DeviceLine& line,
                            platform::Dialer& dialer, platform::Files& files,
                            const std::function<void(RunEvent)>& tell) {
  const RunTelling telling(tell);
  return Conversation(plan, settings, line, dialer, files, telling).hold();
}

RunResult hold_terminal(const RunPlan& plan, const SchedulerSettings& settings,
                        platform::TerminalRelay& relay, platform::Dialer& dialer,
                        const std::atomic<bool>& cancelled, const std::function<void(RunEvent)>& tell) {
  const RunTelling telling(tell);
  const platform::TerminalOrder order = order_of(plan, settings);
  const std::string place = order.host + " port " + std::to_string(order.port);
  const auto fault = base::fault_of([&] {
    dial_up(plan, settings, dialer, cancelled, telling);
    telling.begin("Connecting to " + place);
    const platform::TerminalTraffic traffic =
        relay.hold(order, [&](platform::TerminalStage stage) { tell_stage(stage, place, telling); });
    telling.done(end_sentence(traffic));
  });
  return telling.report(fault, cancelled);
}

}  // namespace qvrcom::scheduler
