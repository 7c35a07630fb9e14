#pragma once

#include <cstdint>
#include <string>

#include "platform/trap.h"
#include "requests/session_request.h"
#include "session/operations.h"
#include "sitebook/site_record.h"

namespace qvrcom::requests {

// One statistics job that somebody asks for.
struct StatisticsOrder {
  sitebook::SiteRecord site;
  std::int32_t partition = 1;  // 1 to 64
  std::string operation = session::operation::kRetrieveStatistics;
};

using StatisticsRequestParts = SessionRequestParts;

// Shows a statistics file that a session has left.
class StatisticsDisplay {
 public:
  virtual ~StatisticsDisplay() = default;
  virtual void ShowStatistics(const std::string& csvFile) = 0;
};

// The bridge from a user's wish to the session dialog.
class StatisticsRequest {
 public:
  StatisticsRequest(const SessionRequestParts& parts, StatisticsDisplay& display);

  // RetrieveStatSingPartition for a device of the new kind. A card type of exactly "OLD" is answered with a
  // message instead (kNotDone); all others count as new.
  RequestResult run(const std::string& card_type, const StatisticsOrder& order);

  // Fills the session values, runs the session dialog and hands the file it left to the display. Any failure
  // is a box without description; the session values keep what was set so far.
  RequestResult RetrieveStatSingPartition(const StatisticsOrder& order);

 private:
  RequestResult result_of(const StatisticsOrder& order, const session::SessionResult& brought) const;

  SessionRequestParts parts_;
  SessionRequest request_;
  StatisticsDisplay& display_;
  platform::Trap trap_;
};

}  // namespace qvrcom::requests
