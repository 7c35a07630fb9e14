#include "control/statistics_request.h"

#include <utility>

#include "environment/names.h"
#include "platform/trap.h"
#include "sitebook/site_record.h"

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

constexpr const char* kPendingLists[] = {environment::kCompletedPendingFile, environment::kErrorPendingFile,
                                         environment::kCancelledPendingFile};

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

}  // namespace

StatisticsRequest::StatisticsRequest(const StatisticsRequestParts& parts, StatisticsDisplay& display)
    : parts_(parts), display_(display), trap_(parts.rules.ui, platform::kControlTrap) {}

RequestResult StatisticsRequest::run(const std::string& card_type, const StatisticsOrder& order) {
  if (card_type == "OLD") {
    parts_.rules.ui.show({.text = "Haven't Implemented the communication to Old QVR",
                          .title = "Information",
                          .icon = platform::Icon::kInformation});
    return RequestResult::kNotDone;
  }
  parts_.rules.session.site.DeviceGeneration = "NEW";
  return RetrieveStatSingPartition(order);
}

RequestResult StatisticsRequest::RetrieveStatSingPartition(const StatisticsOrder& order) {
  return trap_("ERROR! RetrieveStatSingPartition : ", [&] {
    if (refuses(order.site)) return RequestResult::kNotDone;
    auto hold = parts_.gate.enter();
    if (!hold) return RequestResult::kBusy;
    take_over(order);
    prepare_files();
    name_session_site();
    fill_site_table(order.site);
    parts_.screen.show_modal();
    hold.reset();
    const std::string file = parts_.rules.session.run.StatsResultFile;
    if (!file.empty()) display_.ShowStatistics(file);
    return result_of(order);
  });
}

// Such a site's index line would be dropped, and its answer waited for without end.
bool StatisticsRequest::refuses(const SiteRow& site) {
  const auto problems = sitebook::problems_of(record_of(site));
  if (problems.empty()) return false;
  parts_.rules.ui.show({.text = "No session is started for this site. " + sitebook::reasons_of(problems),
                        .title = platform::kSuiteTitle,
                        .icon = platform::Icon::kWarning,
                        .detail = "Correct the site in the site book, then try again."});
  return true;
}

void StatisticsRequest::take_over(const StatisticsOrder& order) {
  base::Session& session = parts_.rules.session;
  for (const Taken& taken : kTaken)
    session.site.*taken.value = order.site[taken.column];
  session.site.LoginName = "admin";
  session.site.SiteID = std::to_string(order.site.site_id);
  session.run.PartitionID = std::to_string(order.partition);
  session.run.SessionConfigID = "1000";
  session.run.ImmediateRun = true;
  session.run.CurrentOperation = order.operation;
  session.run.SessionStatus.clear();  // a refused site would leave the last run's
  session.job.SessionStart = parts_.rules.clock.now();
}

void StatisticsRequest::prepare_files() {
  rules::BusinessRules rules(parts_.rules);
  rules.Create_Folders();
  for (const char* list : kPendingLists)
    rules.Create_File(list);
  parts_.rules.session.run.StatsResultFile.clear();
}

void StatisticsRequest::name_session_site() {
  base::SiteValues& site = parts_.rules.session.site;
  parts_.database.run("Update_SessionQVR", {site.SiteID});
  const base::Rows rows = parts_.database.run("Get_FirmwareVersion", {site.SiteID});
  site.FirmwareVersion = rows.empty() ? "0" : rows[0].text("FirmwareVersion", "0");
}

// Fields that no hidden list fills stay empty: what an earlier run left there belonged to another site.
void StatisticsRequest::fill_site_table(const SiteRow& row) {
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

RequestResult StatisticsRequest::result_of(const StatisticsOrder& order) const {
  const base::RunValues& run = parts_.rules.session.run;
  const bool leaves_file = order.operation != session::operation::kResetStatistics;
  const bool done = run.SessionStatus == "Completed" && (!leaves_file || !run.StatsResultFile.empty());
  return done ? RequestResult::kDone : RequestResult::kNotDone;
}

}  // namespace qvrcom::control
