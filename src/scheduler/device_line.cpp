#include "scheduler/device_line.h"

#include <utility>

namespace qvrcom::scheduler {

platform::DeviceConnection& DeviceLine::connect(const platform::DeviceLimits& limits) {
  std::unique_ptr<platform::DeviceConnection> fresh = devices_.make(limits, progress_);
  const std::lock_guard lock(mutex_);
  if (cancelled_) fresh->cancel();
  connection_ = std::move(fresh);
  return *connection_;
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
