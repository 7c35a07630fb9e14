#include "protocol/script_grammar.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "base/text.h"

namespace qvrcom::protocol {
namespace {

struct HeaderField {
  std::string_view key;
  std::string ScriptHeader::*value;
};

constexpr std::array<HeaderField, 8> kJobFields{{{kJobKeys[0], &ScriptHeader::site_name},
                                                 {kJobKeys[1], &ScriptHeader::site_id},
                                                 {kJobKeys[2], &ScriptHeader::qvr_id},
                                                 {kJobKeys[3], &ScriptHeader::description},
                                                 {kJobKeys[4], &ScriptHeader::start_date},
                                                 {kJobKeys[5], &ScriptHeader::stop_date},
                                                 {kJobKeys[6], &ScriptHeader::interval},
                                                 {kJobKeys[7], &ScriptHeader::period}}};
constexpr std::uint64_t kUnknownSize = 20000;
constexpr std::array<HeaderField, 3> kAccessFields{{{kAccessKeys[0], &ScriptHeader::ftp_address},
                                                    {kAccessKeys[1], &ScriptHeader::ftp_user},
                                                    {kAccessKeys[2], &ScriptHeader::ftp_password}}};

struct Brackets {
  std::string_view open, close;
};
// By ScriptKind.
constexpr std::array<Brackets, 2> kBrackets{
    {{"FTPCONNECT;", "FTPDISCONNECT;"}, {"TELNETSESSION;", "TELNETDISCONNECT;"}}};

constexpr const Brackets& brackets_of(ScriptKind kind) {
  return kBrackets[static_cast<std::size_t>(kind)];
}

void add_line(std::string& text, std::string_view key, std::string_view value) {
  text.append(key).append(value).append(";").append(base::kCrLf);
}

// The rest of `field` behind `key`; nothing when it does not begin with it or the rest is empty.
std::optional<std::string> value_behind(std::string_view key, std::string_view field) {
  if (!field.starts_with(key) || field.size() == key.size()) return std::nullopt;
  return std::string(field.substr(key.size()));
}

// Nothing when it is no number: the size is a hint.
std::optional<std::uint64_t> size_hint(std::string_view digits) {
  std::uint64_t size = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), size);
  if (result.ec != std::errc{} || result.ptr != digits.data() + digits.size()) return std::nullopt;
  return size;
}

using Fields = std::vector<std::string_view>;  // of one line, without the empty one behind the last ";"

// Each fills the command from the fields and answers with what is wrong with them, or "".
std::string read_account(const Fields& fields, ScriptCommand& command) {
  if (fields.size() != 2 || fields[1].empty()) return "an account command has one account";
  command.account = fields[1];
  return {};
}

std::string read_delete(const Fields& fields, ScriptCommand& command) {
  if (fields.size() != 2 || fields[1].empty()) return "a delete command has one device file";
  command.remote = fields[1];
  return {};
}

std::string read_transfer(const Fields& fields, ScriptCommand& command) {
  if (fields.size() < 3 || fields.size() > 4) return "a transfer has REMOTEFILE=, LOCALFILE= and SIZE=";
  const auto remote = value_behind("REMOTEFILE=", fields[1]);
  const auto local = value_behind(kLocalFileKey, fields[2]);
  if (!remote) return "REMOTEFILE= is missing or empty";
  if (!local) return "LOCALFILE= is missing or empty";
  command.remote = *remote;
  command.local = *local;
  if (fields.size() == 4) {
    if (!fields[3].starts_with("SIZE=")) return "SIZE= expected behind the local file";
    command.size = size_hint(fields[3].substr(5));
  }
  return {};
}

std::string transfer_text(const ScriptCommand& command) {
  return "REMOTEFILE=" + command.remote + ";" + std::string(kLocalFileKey) + command.local +
         ";SIZE=" + std::to_string(command.size.value_or(kUnknownSize));
}

struct CommandForm {
  std::string_view word;
  CommandKind kind;
  std::string (*read)(const Fields&, ScriptCommand&);  // answers with what is wrong, or ""
  std::string (*text)(const ScriptCommand&);           // behind the word
};

constexpr std::array<CommandForm, 4> kCommandForms{
    {{"FTPACCT", CommandKind::kAccount, read_account,
      [](const ScriptCommand& command) { return command.account; }},
     {"FTPGET", CommandKind::kGet, read_transfer, transfer_text},
     {"FTPPUT", CommandKind::kPut, read_transfer, transfer_text},
     {"FTPDELETE", CommandKind::kDelete, read_delete,
      [](const ScriptCommand& command) { return command.remote; }}}};

std::string command_text(const ScriptCommand& command) {
  const auto form = std::find_if(kCommandForms.begin(), kCommandForms.end(),
                                 [&](const CommandForm& each) { return each.kind == command.kind; });
  return std::string(form->word) + ';' + form->text(command) + ';';
}

std::string read_command(std::string_view line, ScriptCommand& command) {
  if (base::has_control_character(line)) return "control characters in a command";
  if (!line.ends_with(';')) return "the closing \";\" is missing";
  line.remove_suffix(1);
  const Fields fields = base::split(line, ";");
  const auto form = std::find_if(kCommandForms.begin(), kCommandForms.end(),
                                 [&](const CommandForm& each) { return each.word == fields[0]; });
  if (form == kCommandForms.end()) return "no command of a script";
  command.kind = form->kind;
  return form->read(fields, command);
}

// Walks the lines once; the first problem ends it.
class Reader {
 public:
  explicit Reader(std::string_view text) : lines_(base::lines_of(text)) {}

  ScriptReading read() {
    if (!(read_header() && read_opening() && read_commands() && read_rest())) return {{}, problem_};
    return {std::move(script_), {}};
  }

 private:
  bool read_header() {
    return std::all_of(kJobFields.begin(), kJobFields.end(), [&](const auto& f) { return read_value(f); }) &&
           read_dial_up() && std::all_of(kAccessFields.begin(), kAccessFields.end(), [&](const auto& f) {
             return read_value(f);
           });
  }

  bool read_value(const HeaderField& field) { return read_value(field.key, script_.header.*field.value); }

  // Nothing of a header line is shown: a damaged script may have its password anywhere.
  bool read_value(std::string_view key, std::string& value) {
    const std::string_view text = line();
    const auto end = text.rfind(';');
    const std::string name(key);
    if (text.size() > kScriptLineLimit) return fail(name + " expected, the line is too long");
    if (!text.starts_with(key)) return fail(name + " expected");
    if (end == std::string_view::npos) return fail("the closing \";\" of " + name + " is missing");
    if (base::has_control_character(text)) return fail("control characters in " + name);
    value = text.substr(key.size(), end - key.size());
    ++next_;
    return true;
  }

  bool read_dial_up() {
    if (!line().starts_with(kDialUpKey)) return true;
    std::string value;
    if (!read_value(kDialUpKey, value)) return false;
    const auto sign = value.find('#');
    script_.header.dial_up_flag = 1;
    script_.header.dial_up_connection = value.substr(0, sign);
    if (sign != std::string::npos) script_.header.number_to_dial = value.substr(sign + 1);
    return true;
  }

  bool read_opening() {
    const auto found = std::find_if(kBrackets.begin(), kBrackets.end(),
                                    [&](const Brackets& each) { return each.open == line(); });
    if (found == kBrackets.end()) return fail("FTPCONNECT; or TELNETSESSION; expected");
    script_.kind = static_cast<ScriptKind>(found - kBrackets.begin());
    ++next_;
    return true;
  }

  bool read_commands() {
    const std::string_view close = brackets_of(script_.kind).close;
    for (; next_ < lines_.size() && line() != close; ++next_) {
      if (!line().empty() && !add_command()) return false;
    }
    if (next_ < lines_.size()) return true;
    return fail("the script ends before " + std::string(close));
  }

  bool add_command() {
    // What stands behind a "=" or a blank may be the password, in a script that is damaged.
    constexpr std::size_t kShown = 80;
    const std::string shown(line().substr(0, std::min(line().find_first_of("= "), kShown)));
    if (line().size() > kScriptLineLimit) return fail("the line is too long", shown);
    if (script_.kind == ScriptKind::kTelnet) return fail("a telnet script has no commands", shown);
    if (script_.commands.size() == kScriptCommandLimit) return fail("too many commands", shown);
    ScriptCommand command;
    const std::string wrong = read_command(line(), command);
    if (!wrong.empty()) return fail(wrong, shown);
    command.line = next_ + 1;
    script_.commands.push_back(std::move(command));
    return true;
  }

  bool read_rest() {
    while (++next_ < lines_.size()) {
      if (!line().empty()) return fail("the script goes on behind its closing command");
    }
    return true;
  }

  // The line to be read; an empty one behind the last.
  std::string_view line() const { return next_ < lines_.size() ? lines_[next_] : std::string_view{}; }

  bool fail(std::string reason, std::string shown = {}) {
    problem_ = {next_ + 1, std::move(shown), std::move(reason)};
    return false;
  }

  std::vector<std::string_view> lines_;
  std::size_t next_ = 0;
  Script script_;
  ScriptProblem problem_;
};

}  // namespace

std::string header_text(const ScriptHeader& header, ScriptKind kind) {
  std::string text;
  for (const HeaderField& field : kJobFields)
    add_line(text, field.key, header.*field.value);
  if (header.dial_up_flag == 1) {
    add_line(text, kDialUpKey, header.dial_up_connection + "#" + header.number_to_dial);
  }
  add_line(text, kAccessKeys[0], base::trim(header.ftp_address));
  add_line(text, kAccessKeys[1], header.ftp_user.empty() ? "admin" : std::string_view(header.ftp_user));
  add_line(text, kAccessKeys[2], base::trim(header.ftp_password));
  text.append(brackets_of(kind).open);
  if (kind == ScriptKind::kTelnet) text.append(base::kCrLf).append(brackets_of(kind).close);
  return text;
}

std::string without_password(std::string_view script) {
  std::string text;
  while (!script.empty()) {
    const std::string_view line = script.substr(0, script.find('\n') + 1);
    const std::string_view whole = line.empty() ? script : line;
    const auto end = whole.find_last_not_of("\r\n") + 1;
    text.append(whole.starts_with(kPasswordKey) ? std::string(kPasswordKey) + ";"
                                                : std::string(whole.substr(0, end)));
    text.append(whole.substr(end));
    script.remove_prefix(whole.size());
  }
  return text;
}

ScriptReading read_script(std::string_view text) {
  if (text.size() > kScriptLimit) return {{}, {0, {}, "the script is larger than 1 MiB"}};
  return Reader(text).read();
}

std::string account_of(std::string_view partition) {
  return std::string(kAccountWord).append(base::trim(partition));
}

ScriptCommand select_partition(std::string_view partition) {
  return {.kind = CommandKind::kAccount, .account = account_of(partition)};
}

ScriptCommand get_file(std::string remote, std::string local) {
  return {.kind = CommandKind::kGet, .remote = std::move(remote), .local = std::move(local)};
}

ScriptCommand put_file(std::string remote, std::string local, std::uint64_t size) {
  return {.kind = CommandKind::kPut, .remote = std::move(remote), .local = std::move(local), .size = size};
}

ScriptCommand delete_file(std::string remote) {
  return {.kind = CommandKind::kDelete, .remote = std::move(remote)};
}

std::string commands_text(const std::vector<ScriptCommand>& commands) {
  std::string text;
  for (const ScriptCommand& command : commands)
    text.append(text.empty() ? "" : base::kCrLf).append(command_text(command));
  return text;
}

}  // namespace qvrcom::protocol
