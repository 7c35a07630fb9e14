#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "scheduler/session_conversation.h"

namespace qvrcom::scheduler {

// A conversation on a thread of its own. All that the two threads share is a list of events, the report, two
// atomic values and the connection's cancel.
class SessionThread {
 public:
  // `wake` is called on the session's thread whenever there is news.
  SessionThread(SessionPlan plan, const SchedulerSettings& settings, platform::DeviceConnections& devices,
                platform::Dialer& dialer, std::function<void()> wake);
  ~SessionThread();  // cancels and waits
  SessionThread(const SessionThread&) = delete;
  SessionThread& operator=(const SessionThread&) = delete;

  void cancel();
  void wait();  // until the conversation has ended

  struct News {
    std::vector<SessionEvent> events;
    std::optional<SessionReport> report;  // once, when the conversation has ended
  };
  News take_news();

  std::uint64_t bytes_done() const { return bytes_done_; }  // of the running transfer

 private:
  void run();
  void tell(SessionEvent event);

  const SessionPlan plan_;
  const SchedulerSettings settings_;
  platform::Dialer& dialer_;
  const std::function<void()> wake_;
  std::atomic<bool> cancelled_{false};
  std::atomic<std::uint64_t> bytes_done_{0};
  std::mutex mutex_;
  News news_;  // under the mutex
  const std::unique_ptr<platform::DeviceConnection> device_;
  std::thread thread_;  // last: it starts when all the rest is there
};

}  // namespace qvrcom::scheduler
