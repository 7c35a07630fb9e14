#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/trap.h"
#include "requests/session_request.h"

namespace qvrcom::requests {

struct ViewAnswer {
  RequestResult result = RequestResult::kNotDone;
  std::vector<std::string> messages;  // numbers of the partition's messages, as the device's index lists them
};

// Asks one site for the messages of one partition, 1 to 64.
class ViewRequest {
 public:
  explicit ViewRequest(const SessionRequestParts& parts)
      : parts_(parts), request_(parts), trap_(parts.rules.ui) {}

  ViewAnswer run(const sitebook::SiteRecord& site, std::int32_t partition);

 private:
  SessionRequestParts parts_;
  SessionRequest request_;
  platform::Trap trap_;
};

}  // namespace qvrcom::requests
