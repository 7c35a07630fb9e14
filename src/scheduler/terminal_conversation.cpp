#include "scheduler/terminal_conversation.h"

#include "base/fault.h"

namespace qvrcom::scheduler {
namespace {

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
