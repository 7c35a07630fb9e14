#include "control/same_log_request.h"

namespace qvrcom::control {

SameLogAnswer SameLogRequest::run(const SiteRow& site) {
  SameLogAnswer answer;
  answer.result = trap_("SameLogRequest", [&] {
    if (!request_.accepts_card(site[SiteColumn::kControlCardType])) return RequestResult::kNotDone;
    return request_.run({site, session::operation::kRetrieveSameLog, {}}, [&] {
      parts_.screen.show_modal();
      answer.file = parts_.rules.session.run.SameLogFile;
      return answer.file.empty() ? RequestResult::kNotDone : RequestResult::kDone;
    });
  });
  return answer;
}

}  // namespace qvrcom::control
