#include "requests/all_partitions_request.h"

#include "environment/names.h"
#include "session/refusals.h"

namespace qvrcom::requests {

AllPartitionsAnswer AllPartitionsRequest::run(const sitebook::SiteRecord& site, bool force) {
  AllPartitionsAnswer answer;
  answer.result = trap_("AllPartitionsRequest", [&] {
    if (!request_.accepts_card(sitebook::session_text(site, &sitebook::SiteRecord::card_type)))
      return RequestResult::kNotDone;
    return request_.run({site, session::operation::kRetrieveResetAllStatistics, {}}, [&] {
      if (!force && refuses_firmware()) return RequestResult::kNotDone;
      parts_.screen.show_modal();
      const base::RunValues& run = parts_.rules.session.run;
      answer.files = run.PartitionResults;
      const bool whole = run.SessionStatus == "Completed" && run.MissingResult.empty();
      return whole && !answer.files.empty() ? RequestResult::kDone : RequestResult::kNotDone;
    });
  });
  return answer;
}

bool AllPartitionsRequest::refuses_firmware() const {
  const base::SiteValues& site = parts_.rules.session.site;
  const std::string verdict =
      session::BusinessRules(parts_.rules).Check_Firmware_Version(site.FirmwareVersion);
  if (verdict == environment::kOldStats) return false;
  if (const auto refusal = session::refusal_of(verdict, site)) {
    parts_.rules.ui.show(*refusal);
  } else {
    request_.refuse("No session is started: the site's firmware " + site.FirmwareVersion +
                        " does not keep its statistics in the older form.",
                    "Retrieve and reset its partitions one by one, or force the command.");
  }
  return true;
}

}  // namespace qvrcom::requests
