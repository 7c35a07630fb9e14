#pragma once

#include "platform/device_connection.h"
#include "platform/files.h"

namespace qvrcom::adapters {

// FTP through libcurl: one easy handle on one control connection a session.
class DeviceConnectionsCurl : public platform::DeviceConnections {
 public:
  // `files` turns suite paths into native ones; it is used on the session's thread.
  explicit DeviceConnectionsCurl(const platform::Files& files);

  std::unique_ptr<platform::DeviceConnection> make(const platform::DeviceLimits& limits,
                                                   platform::TransferProgress progress) override;

 private:
  const platform::Files& files_;
};

}  // namespace qvrcom::adapters
