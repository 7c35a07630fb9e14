#include "scheduler/session_thread.h"

#include <utility>

#include "scheduler/session_conversation.h"
#include "scheduler/terminal_conversation.h"

namespace qvrcom::scheduler {

SessionThread::SessionThread(SessionPlan plan, const SchedulerSettings& settings, const SessionWays& ways,
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

SessionThread::~SessionThread() {
  cancel();
  thread_.join();
}

void SessionThread::cancel() {
  line_.cancel();
  if (terminal_) terminal_->cancel();
}

bool SessionThread::wait_for(std::chrono::milliseconds time) {
  std::unique_lock lock(mutex_);
  return ended_.wait_for(lock, time, [this] { return news_.report.has_value(); });
}

SessionThread::News SessionThread::take_news() {
  const std::lock_guard lock(mutex_);
  return std::exchange(news_, {});
}

SessionReport SessionThread::hold() {
  const auto teller = [this](SessionEvent event) { tell(std::move(event)); };
  if (terminal_) return hold_terminal(plan_, settings_, *terminal_, dialer_, line_.cancelled(), teller);
  return hold_conversation(plan_, settings_, line_, dialer_, files_, teller);
}

void SessionThread::run() {
  SessionReport report = hold();
  line_.drop();  // here, where a device that is slow to let go holds up nobody
  {
    const std::lock_guard lock(mutex_);
    news_.report = std::move(report);
  }
  ended_.notify_all();
  wake_();
}

void SessionThread::tell(SessionEvent event) {
  if (!event.step.empty()) bytes_done_ = 0;
  {
    const std::lock_guard lock(mutex_);
    news_.events.push_back(std::move(event));
  }
  wake_();
}

}  // namespace qvrcom::scheduler
