#include "requests/device_requests.h"

#include "environment/names.h"
#include "protocol/job_lists.h"
#include "session/refusals.h"

namespace qvrcom::requests {

SameLogAnswer SameLogRequest::run(const sitebook::SiteRecord& site) {
  SameLogAnswer answer;
  answer.result = trap_("SameLogRequest", [&] {
    return request_.run({site, session::operation::kRetrieveSameLog, {}},
                        [&](session::SessionResult& brought) {
                          brought = parts_.screen.show_modal();
                          answer.file = brought.same_log;
                          return answer.file.empty() ? RequestResult::kNotDone : RequestResult::kDone;
                        });
  });
  return answer;
}

// A list that was read ends with a spare element; one that was not is empty.
ViewAnswer ViewRequest::run(const sitebook::SiteRecord& site, std::int32_t partition) {
  ViewAnswer answer;
  answer.result = trap_("ViewRequest", [&] {
    return request_.run({site, session::operation::kViewDevice, std::to_string(partition)},
                        [&](session::SessionResult& brought) {
                          brought = parts_.screen.show_modal();
                          answer.messages = parts_.rules.session.received.MessageNumbers;
                          const bool is_read = !answer.messages.empty();
                          if (is_read) answer.messages.pop_back();
                          const bool completed =
                              parts_.rules.session.run.SessionStatus == protocol::kCompletedStatus;
                          return is_read && completed ? RequestResult::kDone : RequestResult::kNotDone;
                        });
  });
  return answer;
}

AllPartitionsAnswer AllPartitionsRequest::run(const sitebook::SiteRecord& site, bool force) {
  AllPartitionsAnswer answer;
  answer.result = trap_("AllPartitionsRequest", [&] {
    return request_.run(
        {site, session::operation::kRetrieveResetAllStatistics, {}}, [&](session::SessionResult& brought) {
          if (!force && refuses_firmware()) return RequestResult::kNotDone;
          brought = parts_.screen.show_modal();
          answer.files = brought.partition_files;
          const bool whole =
              parts_.rules.session.run.SessionStatus == protocol::kCompletedStatus && brought.missing.empty();
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
