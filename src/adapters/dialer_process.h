#pragma once

#include "platform/dialer.h"

namespace qvrcom::adapters {

class DialerProcess : public platform::Dialer {
 public:
  void dial(const std::string& program, const std::string& connection, const std::string& number,
            std::chrono::milliseconds limit, const std::atomic<bool>& cancelled) override;
};

}  // namespace qvrcom::adapters
