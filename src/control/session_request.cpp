#include "control/session_request.h"

#include <utility>

#include "base/number.h"
#include "base/text.h"
#include "environment/names.h"
#include "platform/message.h"
#include "sitebook/site_record.h"
#include "siterules/device_address.h"

namespace qvrcom::control {
namespace {

// Which session value, and which field of the session's site table, takes which hidden list.
struct Taken {
  SiteColumn column;
  std::string base::SiteValues::*value;
  base::SiteConnection::Field field;
};

constexpr Taken kTaken[] = {
    {SiteColumn::kConnectMethod, &base::SiteValues::ConnectMethod, base::SiteConnection::kConnectMethod},
    {SiteColumn::kIPLan, &base::SiteValues::IPLan, base::SiteConnection::kLanAddress},
    {SiteColumn::kIPModem, &base::SiteValues::IPModem, base::SiteConnection::kModemAddress},
    {SiteColumn::kUserDefinedSiteName, &base::SiteValues::SiteName, base::SiteConnection::kName},
    {SiteColumn::kUserDefinedSiteID, &base::SiteValues::UserSiteID, base::SiteConnection::kUserSiteId},
    {SiteColumn::kAccessCode, &base::SiteValues::AccessCode, base::SiteConnection::kAccessCode},
    {SiteColumn::kNumberToDial, &base::SiteValues::NumberToDial, base::SiteConnection::kNumberToDial},
    {SiteColumn::kDialupConn, &base::SiteValues::DialupConnection, base::SiteConnection::kDialupConnection},
};

sitebook::SiteRecord record_of(const SiteRow& row) {
  sitebook::SiteRecord site;
  site.site_id = row.site_id;
  site.name = row[SiteColumn::kUserDefinedSiteName];
  site.identifier = row[SiteColumn::kUserDefinedSiteID];
  site.card_type = row[SiteColumn::kControlCardType];
  site.method = row[SiteColumn::kConnectMethod];
  site.lan = row[SiteColumn::kIPLan];
  site.modem = row[SiteColumn::kIPModem];
  site.access_code = row[SiteColumn::kAccessCode];
  site.dialup = row[SiteColumn::kDialupConn];
  site.number = row[SiteColumn::kNumberToDial];
  return site;
}

// What a site without an address has in the place of one.
constexpr const char* kNoAddress = "255.255.255.255";

// Which address the site's connection method asks for and does not find; "" when it is there.
std::string lacking_address(const SiteRow& site) {
  const std::string& method = site[SiteColumn::kConnectMethod];
  const std::string address = siterules::device_address(
      method, site[SiteColumn::kIPLan], site[SiteColumn::kIPDirect], site[SiteColumn::kIPModem]);
  if (!base::trim(address).empty() && base::trim(address) != kNoAddress) return {};
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

// The index line of a site with problems would be dropped, and its answer waited for without end.
bool SessionRequest::accepts(const SiteRow& site) const {
  const auto problems = sitebook::session_problems_of(record_of(site));
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

RequestResult SessionRequest::run(const SessionWish& wish,
                                  const std::function<RequestResult()>& session) const {
  if (!accepts(wish.site)) return RequestResult::kNotDone;
  return run_alone(
      [&] {
        take_over(wish);
        name_session_site();
        fill_site_table(wish.site);
      },
      session);
}

RequestResult SessionRequest::run_alone(const std::function<void()>& fill,
                                        const std::function<RequestResult()>& session) const {
  auto hold = parts_.gate.enter();
  if (!hold) return RequestResult::kBusy;
  prepare_files();
  fill();
  const RequestResult result = session();
  hold.reset();
  tell_missing();
  return result;
}

void SessionRequest::tell_missing() const {
  const base::RunValues& run = parts_.rules.session.run;
  const std::string& reason = run.MissingResult;
  if (reason.empty()) return;
  const bool has_some = !run.StatsResultFile.empty() || !run.PartitionResults.empty();
  parts_.rules.ui.show({.text = has_some ? "The operation has not brought everything."
                                         : "The operation ended without a result.",
                        .title = platform::kSuiteTitle,
                        .icon = platform::Icon::kWarning,
                        .detail = reason});
}

void SessionRequest::take_over(const SessionWish& wish) const {
  base::Session& session = parts_.rules.session;
  for (const Taken& taken : kTaken)
    session.site.*taken.value = wish.site[taken.column];
  session.site.LoginName = "admin";
  session.site.SiteID = std::to_string(wish.site.site_id);
  session.run.PartitionID = wish.partition;
  session.run.SessionConfigID = "1000";
  session.run.ImmediateRun = true;
  session.run.CurrentOperation = wish.operation;
  session.run.SessionStatus.clear();  // a refused site would leave the last run's
  session.job.SessionStart = parts_.rules.clock.now();
}

// What the session leaves behind starts empty.
void SessionRequest::prepare_files() const {
  rules::BusinessRules rules(parts_.rules);
  rules.Create_Folders();
  for (const char* list : environment::kPendingFiles)
    rules.Create_File(list);
  base::Session& session = parts_.rules.session;
  session.run.StatsResultFile.clear();
  session.run.PartitionResults.clear();
  session.run.SameLogFile.clear();
  session.run.MissingResult.clear();
  session.received.PartitionTimes = {};
  session.received.MessageNumbers.clear();
}

void SessionRequest::name_session_site() const {
  base::SiteValues& site = parts_.rules.session.site;
  parts_.database.run("Update_SessionQVR", {site.SiteID});
  const base::Rows rows = parts_.database.run("Get_FirmwareVersion", {site.SiteID});
  site.FirmwareVersion = rows.empty() ? "0" : rows[0].text("FirmwareVersion", "0");
}

// Fields that no hidden list fills stay empty: what an earlier run left there belonged to another site.
void SessionRequest::fill_site_table(const SiteRow& row) const {
  base::SiteValues& site = parts_.rules.session.site;
  site.SelectedSites.resize(2);
  site.SelectedSites[0] = site.SiteName + " - " + site.UserSiteID;
  base::SiteConnection connection;
  for (const Taken& taken : kTaken)
    connection[taken.field] = row[taken.column];
  connection[base::SiteConnection::kSiteId] = site.SiteID;
  site.SiteConnections.resize(2);
  site.SiteConnections[0] = std::move(connection);
}

}  // namespace qvrcom::control
