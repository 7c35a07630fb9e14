#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "platform/dialer.h"
#include "platform/files.h"
#include "platform/terminal_relay.h"
#include "scheduler/device_line.h"
#include "scheduler/run_plan.h"
#include "scheduler/run_telling.h"
#include "scheduler/scheduler_settings.h"

namespace qvrcom::scheduler {

// What a session reaches the world with.
struct RunWays {
  platform::DeviceConnections& devices;
  platform::TerminalRelays& terminals;
  platform::Dialer& dialer;
  platform::Files& files;  // for the job's report; used on the session's thread
};

// A conversation on a thread of its own. All that the two threads share is a list of events, the report, two
// atomic values, the cancel of the connection and the files, whose operations stand each for itself.
class RunThread {
 public:
  // `wake` is called on the session's thread whenever there is news.
  RunThread(RunPlan plan, const SchedulerSettings& settings, const RunWays& ways, std::function<void()> wake);
  ~RunThread();  // cancels and waits
  RunThread(const RunThread&) = delete;
  RunThread& operator=(const RunThread&) = delete;

  void cancel();

  // Whether the conversation has ended and its report is there to be taken, after that time at most.
  bool wait_for(std::chrono::milliseconds time);

  struct News {
    std::vector<RunEvent> events;
    std::optional<RunResult> report;  // once, when the conversation has ended
  };
  News take_news();

  // Of the running transfer; in a Telnet session all that came from the device.
  std::uint64_t bytes_done() const { return bytes_done_; }

 private:
  RunResult hold();
  void run();
  void tell(RunEvent event);

  const RunPlan plan_;
  const SchedulerSettings settings_;
  platform::Dialer& dialer_;
  platform::Files& files_;
  const std::function<void()> wake_;
  std::atomic<std::uint64_t> bytes_done_{0};
  std::mutex mutex_;
  std::condition_variable ended_;
  News news_;  // under the mutex
  DeviceLine line_;
  const std::unique_ptr<platform::TerminalRelay> terminal_;  // of a Telnet session
  std::thread thread_;                                       // last: it starts when all the rest is there
};

}  // namespace qvrcom::scheduler
