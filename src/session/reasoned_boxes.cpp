#include "session/reasoned_boxes.h"

#include <algorithm>
#include <iterator>

#include "base/fault.h"
#include "jobs/job_log.h"
#include "platform/device_connection.h"
#include "protocol/job_log.h"

namespace qvrcom::session {
namespace {

namespace device_fault = platform::device_fault;

constexpr const char* kErrorTitle = "ERROR";
constexpr const char* kCancelledTitle = "CANCELLED";
constexpr std::string_view kLogin = "Login as ";

// A reason that says this is answered with this advice. Reasons are sentences of our own around the device's
// reply: "Login as admin at 10.0.0.5 port 21: 530 Authentication failed."
struct Row {
  bool at_login;
  std::string_view said;
  Advice advice;
};

constexpr Advice kAccessCode{"Correct the site's access code, then try again.", true};
constexpr Advice kAddress{"Correct the site's address, then try again.", true};
constexpr Advice kReach{
    "Check that the device is switched on and reachable and that the site's address is right, then try "
    "again.",
    true};
constexpr Advice kAgain{"Try again. If it happens again, check the line to the device."};
constexpr Advice kNone{""};

constexpr Row kRows[] = {
    {true, ": 530", kAccessCode},
    {true, device_fault::kLoginRefused, kAccessCode},
    {true, device_fault::kNoAddress, kAddress},
    {true, device_fault::kUnknownHost, kAddress},
    {true, device_fault::kUnreachable, kReach},
    {true, device_fault::kNoAnswer, kReach},
    {false, device_fault::kNoAnswer, kAgain},
    {false, device_fault::kClosed, kAgain},
    {false, device_fault::kCutShort, kAgain},
    {false, device_fault::kSilence, kAgain},
};

}  // namespace

const Advice& advice_for(std::string_view reason) {
  const bool at_login = reason.starts_with(kLogin);
  const auto row = std::find_if(std::begin(kRows), std::end(kRows), [&](const Row& each) {
    return (at_login || !each.at_login) && reason.find(each.said) != std::string_view::npos;
  });
  return row == std::end(kRows) ? kNone : row->advice;
}

std::string ReasonedBoxes::reason() const {
  std::string reason;
  // A log that cannot be read keeps no box from being shown.
  base::fault_of(
      [&] { reason = jobs::reason_of(parts_.files, parts_.folders.GetLogsFolder(), parts_.job.Name); });
  return reason;
}

platform::Button ReasonedBoxes::show(const platform::Message& message) {
  const bool failed = message.title == kErrorTitle;
  if (!message.detail.empty() || (!failed && message.title != kCancelledTitle))
    return parts_.boxes.show(message);
  platform::Message told = message;
  const std::string why = reason();
  told.detail = failed ? detail_of(why) : why;
  return parts_.boxes.show(told);
}

std::string ReasonedBoxes::detail_of(const std::string& reason) const {
  if (reason.empty()) return {};
  const Advice& advice = advice_for(reason);
  const std::string log =
      parts_.files.native(protocol::log_path(parts_.folders.GetLogsFolder(), parts_.job.Name));
  std::string next = advice.text;
  if (next.empty()) next = "The session's log tells every step: " + log;
  if (advice.about_site && !parts_.edit_site.empty()) next += " " + parts_.edit_site;
  return reason + " " + next;
}

}  // namespace qvrcom::session
