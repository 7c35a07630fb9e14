#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/session_values.h"
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

struct AllPartitionsAnswer {
  // kDone when there are files and no partition that arrived failed to become one.
  RequestResult result = RequestResult::kNotDone;
  std::vector<session::PartitionFile> files;  // ascending; partitions without statistics are missing
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
