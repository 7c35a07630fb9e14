#include "requests/same_log_request.h"

namespace qvrcom::requests {

SameLogAnswer SameLogRequest::run(const sitebook::SiteRecord& site) {
  SameLogAnswer answer;
  answer.result = trap_("SameLogRequest", [&] {
    if (!request_.accepts_card(sitebook::session_text(site, &sitebook::SiteRecord::card_type)))
      return RequestResult::kNotDone;
    return request_.run({site, session::operation::kRetrieveSameLog, {}}, [&] {
      parts_.screen.show_modal();
      answer.file = parts_.rules.session.run.SameLogFile;
      return answer.file.empty() ? RequestResult::kNotDone : RequestResult::kDone;
    });
  });
  return answer;
}

}  // namespace qvrcom::requests
