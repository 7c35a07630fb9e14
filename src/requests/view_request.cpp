#include "requests/view_request.h"

namespace qvrcom::requests {

// A list that was read ends with a spare element; one that was not is empty.
ViewAnswer ViewRequest::run(const sitebook::SiteRecord& site, std::int32_t partition) {
  ViewAnswer answer;
  answer.result = trap_("ViewRequest", [&] {
    if (!request_.accepts_card(sitebook::session_text(site, &sitebook::SiteRecord::card_type)))
      return RequestResult::kNotDone;
    return request_.run({site, session::operation::kViewDevice, std::to_string(partition)}, [&] {
      parts_.screen.show_modal();
      answer.messages = parts_.rules.session.received.MessageNumbers;
      const bool is_read = !answer.messages.empty();
      if (is_read) answer.messages.pop_back();
      const bool completed = parts_.rules.session.run.SessionStatus == "Completed";
      return is_read && completed ? RequestResult::kDone : RequestResult::kNotDone;
    });
  });
  return answer;
}

}  // namespace qvrcom::requests
