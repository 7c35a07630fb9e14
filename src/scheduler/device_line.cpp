#include "scheduler/device_line.h"

#include <utility>

namespace qvrcom::scheduler {

platform::DeviceConnection& DeviceLine::connect(const platform::DeviceLimits& limits) {
  replace(devices_.make(limits, progress_));
  return *connection_;
}

void DeviceLine::replace(std::unique_ptr<platform::DeviceConnection> connection) {
  // The old one is dropped when the lock has gone: its farewell must not hold up a cancel.
  const std::lock_guard lock(mutex_);
  connection_.swap(connection);
  if (cancelled_ && connection_) connection_->cancel();
}

void DeviceLine::pause(std::chrono::milliseconds time) {
  std::unique_lock lock(mutex_);
  woken_.wait_for(lock, time, [this] { return cancelled_.load(); });
}

void DeviceLine::cancel() {
  {
    const std::lock_guard lock(mutex_);
    cancelled_ = true;
    if (connection_) connection_->cancel();
  }
  woken_.notify_all();
}

}  // namespace qvrcom::scheduler
