#pragma once

#include <string>

#include "platform/trap.h"
#include "requests/session_request.h"

namespace qvrcom::requests {

struct SameLogAnswer {
  RequestResult result = RequestResult::kNotDone;
  std::string file;  // suite path of the log in the SAME log folder, or ""
};

// Retrieves and files the SAME log of one site.
class SameLogRequest {
 public:
  explicit SameLogRequest(const SessionRequestParts& parts)
      : parts_(parts), request_(parts), trap_(parts.rules.ui) {}

  SameLogAnswer run(const sitebook::SiteRecord& site);

 private:
  SessionRequestParts parts_;
  SessionRequest request_;
  platform::Trap trap_;
};

}  // namespace qvrcom::requests
