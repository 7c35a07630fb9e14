#include "requests/session_request.h"

#include <utility>

#include "base/number.h"
#include "base/text.h"
#include "platform/message.h"
#include "protocol/job_lists.h"
#include "sitebook/site_record.h"
#include "siterules/device_address.h"
#include "siterules/site_lookups.h"

namespace qvrcom::requests {
namespace {

// Which address the site's connection method asks for and does not find; "" when it is there.
std::string lacking_address(const sitebook::SiteRecord& site) {
  const auto text = [&](base::Field sitebook::SiteRecord::*member) {
    return sitebook::session_text(site, member);
  };
  const std::string method = text(&sitebook::SiteRecord::method);
  const std::string address = siterules::device_address(method, text(&sitebook::SiteRecord::lan), {},
                                                        text(&sitebook::SiteRecord::modem));
  if (!base::trim(address).empty() && base::trim(address) != sitebook::kNoAddress) return {};
  return base::to_int16(method) == 1 ? "modem" : "LAN";
}

}  // namespace

bool SessionRequest::accepts_card(const std::string& card_type) const {
  if (card_type == "OLD") {
    parts_.rules.ui.show({.text = "Haven't Implemented the communication to Old QVR",
                          .title = "Information",
                          .icon = platform::Icon::kInformation});
    return false;
  }
  parts_.rules.session.site.DeviceGeneration = "NEW";
  return true;
}

// A list on the screen may be older than the book.
std::optional<sitebook::SiteRecord> SessionRequest::stored_site(const sitebook::SiteRecord& shown) const {
  const auto stored = parts_.sites.stored(shown.site_id);
  if (stored && sitebook::have_same_title(*stored, shown)) return *stored;
  const std::string title = "\"" + sitebook::title_of(shown) + "\"";
  refuse(!stored ? "No session is started: the site " + title + " is no longer in the site book."
                 : "No session is started: the site " + title + " is now \"" + sitebook::title_of(*stored) +
                       "\" in the site book.",
         "Refresh the list of sites (\"Refresh\" on the desktop's page Sites), then try again.");
  return std::nullopt;
}

// The index line of a site with problems would be dropped, and its answer waited for without end.
bool SessionRequest::accepts(const sitebook::SiteRecord& site) const {
  const auto problems = sitebook::session_problems_of(sitebook::with_defaults(site));
  if (!problems.empty()) {
    refuse("No session is started for this site. " + sitebook::reasons_of(problems),
           "Correct the site in the site book, then try again.");
    return false;
  }
  const std::string lacking = lacking_address(site);
  if (lacking.empty()) return true;
  refuse("No session is started for this site: it has no " + lacking + " address.",
         "Enter the " + lacking +
             " address in the site book: \"Edit Site...\" on the desktop, or \"qvrcomctl sites edit " +
             std::to_string(site.site_id) + " --" + base::to_lower(lacking) + " ADDRESS\".");
  return false;
}

void SessionRequest::refuse(const std::string& text, const std::string& detail) const {
  parts_.rules.ui.show(
      {.text = text, .title = platform::kSuiteTitle, .icon = platform::Icon::kWarning, .detail = detail});
}

RequestResult SessionRequest::run(const SessionWish& wish, const Work& session) const {
  if (!accepted_site(wish)) return RequestResult::kNotDone;  // before others are waited for
  return run_alone([&](session::SessionResult& brought) {
    const auto site = accepted_site(wish);  // the wait may have been long
    if (!site) return RequestResult::kNotDone;
    take_over(wish, *site);
    name_session_site();
    return session(brought);
  });
}

std::optional<sitebook::SiteRecord> SessionRequest::accepted_site(const SessionWish& wish) const {
  auto site = stored_site(wish.site);
  if (!site) return std::nullopt;
  const std::string card = sitebook::session_text(*site, &sitebook::SiteRecord::card_type);
  const bool accepted = (!wish.judges_card || accepts_card(card)) && accepts(*site);
  return accepted ? std::move(site) : std::nullopt;
}

RequestResult SessionRequest::run_alone(const Work& session) const {
  auto hold = parts_.gate.enter();
  if (!hold) return RequestResult::kBusy;
  prepare_files();
  session::SessionResult brought;
  const RequestResult result = session(brought);
  hold.reset();
  tell_missing(brought);
  return result;
}

void SessionRequest::tell_missing(const session::SessionResult& brought) const {
  if (brought.missing.empty()) return;
  const bool has_some = !parts_.rules.session.run.StatsResultFile.empty() || !brought.partition_files.empty();
  parts_.rules.ui.show({.text = has_some ? "The operation has not brought everything."
                                         : "The operation ended without a result.",
                        .title = platform::kSuiteTitle,
                        .icon = platform::Icon::kWarning,
                        .detail = brought.missing});
}

void SessionRequest::take_over(const SessionWish& wish, const sitebook::SiteRecord& site) const {
  base::Session& session = parts_.rules.session;
  const base::SiteConnection connection = sitebook::connection_of(site);
  siterules::take_over(connection, session.site);
  session.site.LoginName = "admin";
  session.site.SelectedSites.resize(2);
  session.site.SelectedSites[0] = session.site.SiteName + " - " + session.site.UserSiteID;
  session.site.SiteConnections.resize(2);
  session.site.SiteConnections[0] = connection;
  session.run.PartitionID = wish.partition;
  session.run.SessionConfigID = "1000";
  session.run.ImmediateRun = true;
  session.run.CurrentOperation = wish.operation;
  session.run.SessionStatus.clear();  // a refused site would leave the last run's
  session.job.SessionStart = parts_.rules.clock.now();
}

// What the session leaves behind starts empty.
void SessionRequest::prepare_files() const {
  session::BusinessRules rules(parts_.rules);
  rules.Create_Folders();
  for (const protocol::ResultList& list : protocol::kResultLists)
    rules.Create_File(list.pending_file);
  base::Session& session = parts_.rules.session;
  session.run.StatsResultFile.clear();
  session.received.PartitionTimes = {};
  session.received.MessageNumbers.clear();
}

void SessionRequest::name_session_site() const {
  base::SiteValues& site = parts_.rules.session.site;
  parts_.database.run("Update_SessionQVR", {site.SiteID});
  const base::Rows rows = parts_.database.run("Get_FirmwareVersion", {site.SiteID});
  site.FirmwareVersion = rows.empty() ? "0" : rows[0].text("FirmwareVersion", "0");
}

}  // namespace qvrcom::requests
