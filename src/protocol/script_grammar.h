#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The command script of a job, docs/formats/script.md: its text from values, and values from a text that
// anybody may have written.
namespace qvrcom::protocol {

// The fourteen values of a header, in the order of the suite's argument list.
// The keys of a header's lines, in their order: first the job's, then the dial-up connection's, if there is
// one, then those of the access.
inline constexpr std::array<std::string_view, 8> kJobKeys{
    "SITENAME=", "SITEID=", "QVRID=", "DESCRIPTION=", "STARTDATE=", "STOPDATE=", "INTERVAL=", "PERIOD="};
inline constexpr std::size_t kDescriptionKey = 3;
inline constexpr std::string_view kDialUpKey = "RAS=";
inline constexpr std::array<std::string_view, 3> kAccessKeys{"FTPIPADDRESS=", "FTPUSER=", "FTPPASSWORD="};
inline constexpr std::string_view kPasswordKey = kAccessKeys[2];

// In a transfer's line.
inline constexpr std::string_view kLocalFileKey = "LOCALFILE=";

// What the account of a partition begins with.
inline constexpr std::string_view kAccountWord = "part";

struct ScriptHeader {
  std::string site_name;
  std::string site_id;  // the user's own identifier
  std::string qvr_id;   // the device's key in the site book
  std::string description;
  std::int16_t dial_up_flag = 0;  // 1: reached over a dial-up connection
  std::string dial_up_connection;
  std::string number_to_dial;
  std::string ftp_address;   // written without blanks around it
  std::string ftp_user;      // "admin" is written when it is empty
  std::string ftp_password;  // written without blanks around it
  std::string start_date;    // date serials
  std::string stop_date;
  std::string interval;
  std::string period;

  bool operator==(const ScriptHeader&) const = default;
};

enum class ScriptKind { kTransfer, kTelnet };

// The header with the opening command, no line end after its last line. A telnet script is complete with it.
std::string header_text(const ScriptHeader& header, ScriptKind kind);

// The script with an empty value in every password line; every line keeps its place.
std::string without_password(std::string_view script);

enum class CommandKind { kAccount, kGet, kPut, kDelete };

struct ScriptCommand {
  CommandKind kind = CommandKind::kAccount;
  std::string account = {};                          // kAccount: "part" + number
  std::string remote = {};                           // kGet, kPut, kDelete: name of the device file
  std::string local = {};                            // kGet, kPut: suite path
  std::optional<std::uint64_t> size = std::nullopt;  // kGet, kPut: a hint, nothing when it is no number
  std::size_t line = 0;                              // where it stands, counted from 1
};

// Commands as an operation asks for them. A partition is its number, blanks around it are dropped; a fetch
// whose size is not known names 20000.
ScriptCommand select_partition(std::string_view partition);
std::string account_of(std::string_view partition);
ScriptCommand get_file(std::string remote, std::string local);
ScriptCommand put_file(std::string remote, std::string local, std::uint64_t size);
ScriptCommand delete_file(std::string remote);

// The commands as lines of a script, no line end after the last one.
std::string commands_text(const std::vector<ScriptCommand>& commands);

// Opening and closing commands are the kind's: FTPCONNECT and FTPDISCONNECT, or TELNETSESSION and
// TELNETDISCONNECT. They are checked and left out of `commands`.
struct Script {
  ScriptHeader header;
  ScriptKind kind = ScriptKind::kTransfer;
  std::vector<ScriptCommand> commands;
};

// Why a text is no script. `text` is the line as far as it may be shown: never a value.
struct ScriptProblem {
  std::size_t line = 0;  // counted from 1; 0 when it is about the whole text
  std::string text;
  std::string reason;
};

inline constexpr std::size_t kScriptLimit = 1U << 20U;
inline constexpr std::size_t kScriptLineLimit = 4096;
inline constexpr std::size_t kScriptCommandLimit = 10000;

struct ScriptReading {
  std::optional<Script> script;
  ScriptProblem problem;  // when there is no script
};

// Reads one whole script. Fields close with ";", a header value goes up to the last one of its line. A text
// that ends before its closing command, or goes on after it, is no script.
ScriptReading read_script(std::string_view text);

}  // namespace qvrcom::protocol
