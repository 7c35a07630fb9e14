#pragma once

#include <string>
#include <vector>

#include "base/session_values.h"
#include "platform/trap.h"
#include "requests/session_request.h"

namespace qvrcom::requests {

struct AllPartitionsAnswer {
  // kDone when there are files and no partition that arrived failed to become one.
  RequestResult result = RequestResult::kNotDone;
  std::vector<base::PartitionFile> files;  // ascending; partitions without statistics are missing
};

// Retrieves and resets the statistics of all partitions of one site in one job. It is meant for devices that
// keep the older form of statistics; every other site is refused unless `force`.
class AllPartitionsRequest {
 public:
  explicit AllPartitionsRequest(const SessionRequestParts& parts)
      : parts_(parts), request_(parts), trap_(parts.rules.ui) {}

  AllPartitionsAnswer run(const sitebook::SiteRecord& site, bool force = false);

 private:
  bool refuses_firmware() const;

  SessionRequestParts parts_;
  SessionRequest request_;
  platform::Trap trap_;
};

}  // namespace qvrcom::requests
