// Any bytes as a command script: refused with a reason, or read into commands that stay within the limits and
// carry nothing that could become a second command on the device's control connection.
#include "protocol/script_grammar.h"

#include "base/text.h"
#include "entry.h"

void fuzz(std::string_view text) {
  using namespace qvrcom;
  const protocol::ScriptReading reading = protocol::read_script(text);
  require(reading.script.has_value() == reading.problem.reason.empty());
  if (!reading.script) return;
  const protocol::Script& script = *reading.script;
  require(script.commands.size() <= protocol::kScriptCommandLimit);
  for (const protocol::ScriptCommand& command : script.commands) {
    require(!base::has_control_character(command.account + command.remote + command.local));
    require(!command.account.empty() || !command.remote.empty());
  }
  // A header that was read is written as one that reads the same, but for blanks and the default user.
  const auto again =
      protocol::read_script(protocol::header_text(script.header, protocol::ScriptKind::kTelnet));
  require(again.script && again.script->header.site_name == script.header.site_name &&
          again.script->header.period == script.header.period);
}
