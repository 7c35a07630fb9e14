#include "requests/statistics_request.h"

#include "platform/trap.h"
#include "protocol/job_lists.h"

namespace qvrcom::requests {

StatisticsRequest::StatisticsRequest(const SessionRequestParts& parts, StatisticsDisplay& display)
    : parts_(parts), request_(parts), display_(display), trap_(parts.rules.ui, platform::kControlTrap) {}

RequestResult StatisticsRequest::run(const std::string& card_type, const StatisticsOrder& order) {
  if (!request_.accepts_card(card_type)) return RequestResult::kNotDone;
  return RetrieveStatSingPartition(order);
}

RequestResult StatisticsRequest::RetrieveStatSingPartition(const StatisticsOrder& order) {
  return trap_("ERROR! RetrieveStatSingPartition : ", [&] {
    const SessionWish wish{order.site, order.operation, std::to_string(order.partition), false};
    std::string file;
    const RequestResult result = request_.run(wish, [&](session::SessionResult& brought) {
      brought = parts_.screen.show_modal();
      file = parts_.rules.session.run.StatsResultFile;
      return result_of(order, brought);
    });
    if (!file.empty()) display_.ShowStatistics(file);
    return result;
  });
}

RequestResult StatisticsRequest::result_of(const StatisticsOrder& order,
                                           const session::SessionResult& brought) const {
  const base::RunValues& run = parts_.rules.session.run;
  const bool leaves_file = order.operation != session::operation::kResetStatistics;
  const bool done = run.SessionStatus == protocol::kCompletedStatus && brought.missing.empty() &&
                    (!leaves_file || !run.StatsResultFile.empty());
  return done ? RequestResult::kDone : RequestResult::kNotDone;
}

}  // namespace qvrcom::requests
