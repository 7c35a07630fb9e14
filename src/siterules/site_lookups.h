#pragma once

#include <string>
#include <string_view>

#include "base/rows.h"
#include "base/session_values.h"
#include "environment/command_set.h"
#include "platform/components.h"
#include "platform/trap.h"
#include "platform/xml_rows.h"

namespace qvrcom::siterules {

// Makes this site of the session's site table the site being worked on. An empty generation or firmware
// version leaves the value alone.
void take_over(const base::SiteConnection& connection, base::SiteValues& site);

// Facts about site, user and configuration, put into the session's site values. Each lookup is trapped: after
// a fault the values are what they were. A row without the fact gives its default, an answer without rows
// leaves the value alone.
class SiteLookups {
 public:
  SiteLookups(const platform::Trap& trap, base::SiteValues& site, platform::Components& components,
              const platform::XmlRows& xml_rows, environment::DBase& dbase)
      : trap_(trap), site_(site), components_(components), xml_rows_(xml_rows), dbase_(dbase) {}

  // Not trapped: the fault is reported by the lookup that asked.
  base::Rows XMLToRS(std::string_view xml_text) const;

  void Get_ControlCardType();        // "NEW" when null or empty; the last row decides
  void Get_Current_User();           // LoginName, "admin" when null or empty
  void Get_Current_Config();         // CurrentConfigID, "1" when null or empty
  void QVRSettings_MachineTypeID();  // MachineType of the current configuration: the last row that has one

  // Copies one entry of the session's site table into the site values: the entry with this site key, else the
  // entry whose "name - identifier" it is, else nothing. A modem entry is one whose method is 1.
  void Get_Site(const std::string& device_id);

  // Tells the suite's user data which site the session works on.
  void Update_SiteID_in_SessionQVR();

 private:
  base::Rows ask(const char* component, const char* operation, std::initializer_list<std::string> arguments);

  platform::Trap trap_;
  base::SiteValues& site_;
  platform::Components& components_;
  const platform::XmlRows& xml_rows_;
  environment::DBase& dbase_;
};

}  // namespace qvrcom::siterules
