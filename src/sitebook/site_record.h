#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/rows.h"
#include "jobs/index_line.h"

namespace qvrcom::sitebook {

// One row of the site table. Nulls and empty texts are told apart, as the suite's lists do.
struct SiteRecord {
  std::int32_t site_id = 0;  // the key; 0 for a site that is not stored yet
  base::Field name;
  base::Field identifier;  // the user's own
  base::Field card_type;
  base::Field method;  // 1 modem, 2 direct, anything else LAN
  base::Field lan;
  base::Field modem;
  base::Field access_code;
  base::Field dialup;
  base::Field number;
  base::Field firmware;

  bool operator==(const SiteRecord&) const = default;
};

// What the table allows in a column, on top of "well-formed UTF-8 without control characters".
enum class SiteText {
  kAny,      // stays out of the job index
  kIndexed,  // becomes a field of the job index: no ";" and no "^"
  kAddress,  // as kIndexed, and an address that can be read
  kNumber    // 0 to 9999
};

// The columns that a person fills in, in their order on every view.
struct SiteColumn {
  std::string_view key;     // command-line option, CSV header, JSON name
  std::string_view label;   // for people
  std::string_view column;  // of the table Site
  base::Field SiteRecord::*member;
  SiteText text;
};

inline constexpr std::array<SiteColumn, 10> kSiteColumns{{
    {"name", "Site name", "User_Defined_Site_Name", &SiteRecord::name, SiteText::kIndexed},
    {"id", "Site identifier", "User_Defined_Site_ID", &SiteRecord::identifier, SiteText::kIndexed},
    {"card-type", "Control card type", "ControlCardType", &SiteRecord::card_type, SiteText::kAny},
    {"method", "Connection method", "ConnectMethodID", &SiteRecord::method, SiteText::kNumber},
    {"lan", "LAN address", "IPLAN", &SiteRecord::lan, SiteText::kAddress},
    {"modem", "Modem address", "IPMODEM", &SiteRecord::modem, SiteText::kAddress},
    {"access-code", "Access code", "AccessCode", &SiteRecord::access_code, SiteText::kAny},
    {"dialup", "Dial-up connection", "DialupConnection", &SiteRecord::dialup, SiteText::kIndexed},
    {"number", "Number to dial", "NumberToDial", &SiteRecord::number, SiteText::kIndexed},
    {"firmware", "Firmware version", "FirmwareVersion", &SiteRecord::firmware, SiteText::kAny},
}};

// "name - identifier", the way a site stands in every list.
std::string title_of(const SiteRecord& site);

// Something that keeps a site out of the book, or out of a session.
struct SiteProblem {
  std::string_view key;  // of the column
  std::string reason;    // a sentence
};

// The longest text of a column, in bytes, and the longest two that stand in one line of a job (name and
// identifier, dial-up connection and number): the rest of the line is left to its times and paths.
inline constexpr std::size_t kSiteTextLimit = jobs::kIndexLineLimit - 1096;

// What keeps the record's own texts out of the book; a site has a name or an identifier.
std::vector<SiteProblem> problems_of(const SiteRecord& site);

// What keeps a stored site out of a session: its job's lines would be read as something else, or not at all.
std::vector<SiteProblem> session_problems_of(const SiteRecord& site);

// The reasons, one sentence after the other.
std::string reasons_of(const std::vector<SiteProblem>& problems);

}  // namespace qvrcom::sitebook
