#include "scheduler/session_thread.h"

#include <utility>

namespace qvrcom::scheduler {

SessionThread::SessionThread(SessionPlan plan, const SchedulerSettings& settings,
                             platform::DeviceConnections& devices, platform::Dialer& dialer,
                             std::function<void()> wake)
    : plan_(std::move(plan)),
      settings_(settings),
      dialer_(dialer),
      wake_(std::move(wake)),
      device_(devices.make(settings_.limits, [this](std::uint64_t bytes) { bytes_done_ = bytes; })),
      thread_([this] { run(); }) {}

SessionThread::~SessionThread() {
  cancel();
  wait();
}

void SessionThread::cancel() {
  cancelled_ = true;
  device_->cancel();
}

void SessionThread::wait() {
  if (thread_.joinable()) thread_.join();
}

SessionThread::News SessionThread::take_news() {
  const std::lock_guard lock(mutex_);
  return std::exchange(news_, {});
}

void SessionThread::run() {
  SessionReport report = hold_conversation(plan_, settings_, *device_, dialer_, cancelled_,
                                           [this](SessionEvent event) { tell(std::move(event)); });
  {
    const std::lock_guard lock(mutex_);
    news_.report = std::move(report);
  }
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
