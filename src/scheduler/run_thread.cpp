#include "scheduler/run_thread.h"

#include <utility>

#include "scheduler/run_conversation.h"

namespace qvrcom::scheduler {

RunThread::RunThread(RunPlan plan, const SchedulerSettings& settings, const RunWays& ways,
                     std::function<void()> wake)
    : plan_(std::move(plan)),
      settings_(settings),
      dialer_(ways.dialer),
      files_(ways.files),
      wake_(std::move(wake)),
      line_(ways.devices, [this](std::uint64_t bytes) { bytes_done_ = bytes; }),
      terminal_(plan_.kind == protocol::ScriptKind::kTelnet
                    ? ways.terminals.make([this](std::uint64_t bytes) { bytes_done_ = bytes; })
                    : nullptr),
      thread_([this] { run(); }) {}

RunThread::~RunThread() {
  cancel();
  thread_.join();
}

void RunThread::cancel() {
  line_.cancel();
  if (terminal_) terminal_->cancel();
}

bool RunThread::wait_for(std::chrono::milliseconds time) {
  std::unique_lock lock(mutex_);
  return ended_.wait_for(lock, time, [this] { return news_.report.has_value(); });
}

RunThread::News RunThread::take_news() {
  const std::lock_guard lock(mutex_);
  return std::exchange(news_, {});
}

RunResult RunThread::hold() {
  const auto teller = [this](RunEvent event) { tell(std::move(event)); };
  if (terminal_) return hold_terminal(plan_, settings_, *terminal_, dialer_, line_.cancelled(), teller);
  return hold_conversation(plan_, settings_, line_, dialer_, files_, teller);
}

void RunThread::run() {
  RunResult report = hold();
  line_.drop();  // here, where a device that is slow to let go holds up nobody
  {
    const std::lock_guard lock(mutex_);
    news_.report = std::move(report);
  }
  ended_.notify_all();
  wake_();
}

void RunThread::tell(RunEvent event) {
  if (!event.step.empty()) bytes_done_ = 0;
  {
    const std::lock_guard lock(mutex_);
    news_.events.push_back(std::move(event));
  }
  wake_();
}

}  // namespace qvrcom::scheduler
