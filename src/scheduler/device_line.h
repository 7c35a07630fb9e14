#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "platform/device_connection.h"

namespace qvrcom::scheduler {

// The way to a device: one connection at a time, replaced by a fresh one on the session's thread, while
// another thread may cancel whichever there is.
class DeviceLine {
 public:
  DeviceLine(platform::DeviceConnections& devices, platform::TransferProgress progress)
      : devices_(devices), progress_(std::move(progress)) {}

  // Drops the connection there is and answers with a fresh one, not logged in.
  platform::DeviceConnection& connect(const platform::DeviceLimits& limits);

  // The connection that `connect` made last; there must be one.
  platform::DeviceConnection& current() { return *connection_; }

  // Drops the connection there is.
  void drop() { replace(nullptr); }

  // Waits that long; shorter once it is cancelled.
  void pause(std::chrono::milliseconds time);

  // For any thread: ends the running operation and every later one, and the pause.
  void cancel();
  const std::atomic<bool>& cancelled() const { return cancelled_; }

 private:
  void replace(std::unique_ptr<platform::DeviceConnection> connection);

  platform::DeviceConnections& devices_;
  const platform::TransferProgress progress_;
  std::mutex mutex_;  // for the place of the connection, and cancelling
  std::condition_variable woken_;
  std::unique_ptr<platform::DeviceConnection> connection_;
  std::atomic<bool> cancelled_{false};
};

}  // namespace qvrcom::scheduler
