#include <CLI/CLI.hpp>

#include "cli/command_context.h"
#include "cli/commands.h"
#include "requests/system_request.h"

namespace qvrcom::cli {
namespace {

// The session dialog with the user's terminal beside it.
class TelnetScreen : public session::SessionScreen {
 public:
  TelnetScreen(session::SessionScreen& dialog, TelnetTerminal& terminal, const base::JobValues& job)
      : dialog_(dialog), terminal_(terminal), job_(job) {}

  session::SessionResult show_modal() override {
    terminal_.attach(job_.Name);
    session::SessionResult result = dialog_.show_modal();
    terminal_.leave();
    return result;
  }
  session::SessionResult show_late_outcome() override { return dialog_.show_late_outcome(); }

 private:
  session::SessionScreen& dialog_;
  TelnetTerminal& terminal_;
  const base::JobValues& job_;
};

ExitCode telnet(CommandContext& context, const std::string& key) {
  const sitebook::SiteRecord site = context.sites.find({key}).front();
  const requests::SessionRequestParts& parts = context.requests;
  TelnetScreen screen(parts.screen, context.telnet, parts.rules.session.job);
  requests::SystemRequest request({parts.rules, parts.database, parts.gate, screen, parts.link, parts.sites});
  const requests::SystemOrder order{.site = site, .operation = session::operation::kTelnetSession};
  return context.sessions.run({{sitebook::title_of(site), [&] { return request.run(order).result; }}});
}

}  // namespace

void add_telnet_command(CLI::App& system, Invocation& invocation) {
  CLI::App* command = system.add_subcommand("telnet", "Talk to the device; Ctrl-] leaves");
  auto site = std::make_shared<std::string>();
  command->add_option("--site", *site, "Key, identifier or \"name - identifier\" of a site")->required();
  command->add_flag("--wait", invocation.wait, "Wait for another program's session to end");
  command->callback([site, &invocation] {
    invocation.command = [site](CommandContext& context) { return telnet(context, *site); };
  });
}

}  // namespace qvrcom::cli
