#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/rows.h"
#include "base/session_values.h"
#include "protocol/index_line.h"

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

// What a site without an address has in the place of one.
inline constexpr const char* kNoAddress = "255.255.255.255";

// What a session takes of a column that is null, or, where that counts as missing as well, empty.
struct SessionDefault {
  const char* text = "";
  bool also_when_empty = false;
};

// The columns that a person fills in, in their order on every view.
struct SiteColumn {
  std::string_view key;     // command-line option, CSV header, JSON name
  std::string_view label;   // for people
  std::string_view column;  // of the table Site
  base::Field SiteRecord::*member;
  SiteText text;
  std::optional<base::SiteConnection::Field> taken_as = std::nullopt;  // in the session's site table
  SessionDefault when_missing = {};
};

inline constexpr std::array<SiteColumn, 10> kSiteColumns{{
    {"name", "Site name", "User_Defined_Site_Name", &SiteRecord::name, SiteText::kIndexed,
     base::SiteConnection::kName},
    {"id", "Site identifier", "User_Defined_Site_ID", &SiteRecord::identifier, SiteText::kIndexed,
     base::SiteConnection::kUserSiteId},
    {"card-type",
     "Control card type",
     "ControlCardType",
     &SiteRecord::card_type,
     SiteText::kAny,
     std::nullopt,
     {"NEW"}},
    {"method",
     "Connection method",
     "ConnectMethodID",
     &SiteRecord::method,
     SiteText::kNumber,
     base::SiteConnection::kConnectMethod,
     {"0", true}},
    {"lan",
     "LAN address",
     "IPLAN",
     &SiteRecord::lan,
     SiteText::kAddress,
     base::SiteConnection::kLanAddress,
     {kNoAddress, true}},
    {"modem",
     "Modem address",
     "IPMODEM",
     &SiteRecord::modem,
     SiteText::kAddress,
     base::SiteConnection::kModemAddress,
     {"192.168.101.2", true}},
    {"access-code", "Access code", "AccessCode", &SiteRecord::access_code, SiteText::kAny,
     base::SiteConnection::kAccessCode},
    {"dialup",
     "Dial-up connection",
     "DialupConnection",
     &SiteRecord::dialup,
     SiteText::kIndexed,
     base::SiteConnection::kDialupConnection,
     {"<No Connection Defined>"}},
    {"number", "Number to dial", "NumberToDial", &SiteRecord::number, SiteText::kIndexed,
     base::SiteConnection::kNumberToDial},
    {"firmware", "Firmware version", "FirmwareVersion", &SiteRecord::firmware, SiteText::kAny},
}};

// The site of a row of the table Site.
SiteRecord site_of(const base::Row& row);

// The site with the defaults of a session in the place of what is missing.
SiteRecord with_defaults(SiteRecord site);

// A column as a session takes it, with its default.
std::string session_text(const SiteRecord& site, base::Field SiteRecord::*member);

// The site as a session takes it over, with the defaults. What no column fills is empty.
base::SiteConnection connection_of(const SiteRecord& site);

// "name - identifier", or the one of the two that there is: how people are shown a site.
std::string title_of(const std::string& name, const std::string& identifier);
std::string title_of(const SiteRecord& site);

// "name - identifier" whatever is missing: the text of the statistics control's list, and a key of a site.
std::string list_text_of(const SiteRecord& site);

// Whether both have the same name and identifier; a null counts as an empty text.
bool have_same_title(const SiteRecord& one, const SiteRecord& other);

// Something that keeps a site out of the book, or out of a session.
struct SiteProblem {
  std::string_view key;  // of the column
  std::string reason;    // a sentence
};

// The longest text of a column, in bytes, and the longest two that stand in one line of a job (name and
// identifier, dial-up connection and number): the rest of the line is left to its times and paths.
inline constexpr std::size_t kSiteTextLimit = protocol::kIndexLineLimit - 1096;

// What keeps the record's own texts out of the book; a site has a name or an identifier.
std::vector<SiteProblem> problems_of(const SiteRecord& site);

// What keeps a stored site out of a session: its job's lines would be read as something else, or not at all.
std::vector<SiteProblem> session_problems_of(const SiteRecord& site);

// The reasons, one sentence after the other.
std::string reasons_of(const std::vector<SiteProblem>& problems);

}  // namespace qvrcom::sitebook
