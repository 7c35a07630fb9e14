#include "siterules/site_lookups.h"

#include <algorithm>
#include <vector>

#include "base/fault.h"

namespace qvrcom::siterules {
namespace {

using base::SiteConnection;

// What a session takes over of a site, and whether an empty field leaves the session value alone.
struct Copied {
  SiteConnection::Field field;
  std::string base::SiteValues::*value;
  bool only_when_filled;
};

constexpr Copied kCopied[] = {
    {SiteConnection::kName, &base::SiteValues::SiteName, false},
    {SiteConnection::kUserSiteId, &base::SiteValues::UserSiteID, false},
    {SiteConnection::kSiteId, &base::SiteValues::SiteID, false},
    {SiteConnection::kLanAddress, &base::SiteValues::IPLan, false},
    {SiteConnection::kDirectAddress, &base::SiteValues::IPDirect, false},
    {SiteConnection::kModemAddress, &base::SiteValues::IPModem, false},
    {SiteConnection::kAccessCode, &base::SiteValues::AccessCode, false},
    {SiteConnection::kConnectMethod, &base::SiteValues::ConnectMethod, false},
    {SiteConnection::kDialupConnection, &base::SiteValues::DialupConnection, false},
    {SiteConnection::kNumberToDial, &base::SiteValues::NumberToDial, false},
    {SiteConnection::kDeviceGeneration, &base::SiteValues::DeviceGeneration, true},
    {SiteConnection::kFirmwareVersion, &base::SiteValues::FirmwareVersion, true},
    {SiteConnection::kMachineType, &base::SiteValues::MachineType, false},  // another site may be of another
};

const SiteConnection* find_site(const std::vector<SiteConnection>& table, const std::string& device_id) {
  const auto is_site = [&](const SiteConnection& entry) {
    return !entry[SiteConnection::kSiteId].empty() && entry[SiteConnection::kSiteId] == device_id;
  };
  const auto is_titled = [&](const SiteConnection& entry) {
    return !entry[SiteConnection::kSiteId].empty() &&
           entry[SiteConnection::kName] + " - " + entry[SiteConnection::kUserSiteId] == device_id;
  };
  auto found = std::find_if(table.begin(), table.end(), is_site);
  if (found == table.end()) found = std::find_if(table.begin(), table.end(), is_titled);
  return found == table.end() ? nullptr : &*found;
}

// The value that the last row decides; `before` when there is no row.
std::string last_value(const base::Rows& rows, std::string_view column, std::string_view substitute,
                       const std::string& before) {
  std::string value = before;
  for (const base::Row row : rows)
    value = row.text_or(column, substitute);
  return value;
}

}  // namespace

base::Rows SiteLookups::XMLToRS(std::string_view xml_text) const {
  return xml_rows_.load(xml_text);
}

void take_over(const SiteConnection& connection, base::SiteValues& site) {
  for (const Copied& copied : kCopied) {
    const std::string& text = connection[copied.field];
    if (!copied.only_when_filled || !text.empty()) site.*copied.value = text;
  }
}

// The component lives for this one question.
base::Rows SiteLookups::ask(const char* component, const char* operation,
                            std::initializer_list<std::string> arguments) {
  const auto created = components_.create(component);
  const auto answer = created->call(operation, std::span(arguments.begin(), arguments.size()));
  if (!answer)
    throw base::Fault("Invalid use of Null", std::string(component) + " has no answer to " + operation + ".");
  return XMLToRS(*answer);
}

void SiteLookups::Get_ControlCardType() {
  trap_("Get_ControlCardType", [&] {
    const base::Rows rows = ask("QVRdb.SITE", "Get_Site_Rows", {site_.SiteID});
    site_.ControlCardType = last_value(rows, "ControlCardType", "NEW", site_.ControlCardType);
  });
}

void SiteLookups::Get_Current_User() {
  trap_("Get_Current_User", [&] {
    const base::Rows rows = ask("QVRdb.Use", "Get_Current_User_Rows", {});
    site_.LoginName = last_value(rows, "LoginName", "admin", site_.LoginName);
  });
}

void SiteLookups::Get_Current_Config() {
  trap_("Get_Current_Config", [&] {
    const base::Rows rows = ask("QVRdb.Config", "Get_Current_Config_Rows", {});
    site_.CurrentConfigID = last_value(rows, "ID", "1", site_.CurrentConfigID);
  });
}

void SiteLookups::QVRSettings_MachineTypeID() {
  trap_("QVRSettings_MachineTypeID", [&] {
    std::string type = site_.MachineType;
    const base::Rows rows = dbase_.run("Get_QVRSetting", {site_.CurrentConfigID});
    for (const base::Row row : rows)
      type = row.text("Machine_Type_ID", type);
    site_.MachineType = type;
  });
}

void SiteLookups::Get_Site(const std::string& device_id) {
  trap_("Get_Site", [&] {
    const SiteConnection* entry = find_site(site_.SiteConnections, device_id);
    if (entry == nullptr) return;
    take_over(*entry, site_);
  });
}

void SiteLookups::Update_SiteID_in_SessionQVR() {
  trap_("Update_SiteID_in_SessionQVR", [&] {
    const auto component = components_.create("QVRud.udconfig");
    component->call("Update_SiteID", std::span(&site_.SiteID, 1));
  });
}

}  // namespace qvrcom::siterules
