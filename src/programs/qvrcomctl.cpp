#include <unistd.h>

#include <QCoreApplication>
#include <iostream>

#include "adapters/byte_source_posix.h"
#include "adapters/terminal_local.h"
#include "base/fault.h"
#include "cli/command_context.h"
#include "cli/invocation.h"
#include "programs/suite.h"
#include "requests/session_progress.h"
#include "session/session_run.h"

namespace {

using namespace qvrcom;

constexpr const char* kEditSite = "\"qvrcomctl sites edit\" changes its entry.";

cli::ExitCode run(const cli::Invocation& invocation, cli::Console& console) {
  adapters::SystemClock clock;
  const bool somebody_there = isatty(STDIN_FILENO) != 0 && isatty(STDERR_FILENO) != 0;
  cli::ConsoleUserInterface ui(console, invocation.answer, somebody_there ? &std::cin : nullptr);
  cli::ConsoleSessions sessions(console, ui, clock);
  session::SessionGate::WhenBusy wait;
  if (invocation.wait) wait = [&](const std::string& owner) { return sessions.wait_for(owner); };

  programs::Suite suite(ui, wait, kEditSite);
  suite.report_plugin_problems();
  session::SessionRun screen(suite.session_parts(), sessions);
  const requests::SessionRequestParts requests = suite.request_parts(screen);
  cli::SessionBatch batch(console, ui, sessions, requests);
  adapters::TerminalLocal terminal(suite.layout.run_folder, suite.layout.runtime_folder);
  cli::TelnetTerminal telnet(console, terminal, STDIN_FILENO);
  const auto status = [&] { return suite.scheduler.status().status; };
  sessions.watch(
      {[&] { return requests::progress_line(requests::progress_of(status(), suite.session.job.Name)); },
       [&] { return requests::running_line(status()); }});
  environment::SetUp set_up = suite.set_up();
  const adapters::ByteSourcesPosix byte_sources;
  cli::CommandContext context{console,
                              std::cin,
                              ui,
                              clock,
                              suite.files,
                              suite.programs,
                              suite.scheduler,
                              suite.machine,
                              suite.folders,
                              set_up,
                              suite.proposed_folders(),
                              suite.sites,
                              suite.jobs,
                              byte_sources,
                              batch,
                              requests,
                              telnet};
  return cli::run(invocation, context);
}

// Standard error is for the suite's messages; Qt's remarks about the environment are none.
void drop_remarks(QtMsgType type, const QMessageLogContext&, const QString& text) {
  if (type == QtCriticalMsg || type == QtFatalMsg) std::cerr << text.toStdString() << std::endl;
}

}  // namespace

int main(int argc, char** argv) {
  cli::take_standard_descriptors();
  const cli::Invocation invocation =
      cli::read_command_line({argv + 1, argv + argc}, QVRCOM_VERSION, std::cout, std::cerr);
  if (!invocation.command) return static_cast<int>(invocation.exit_code);
  qInstallMessageHandler(drop_remarks);
  const QCoreApplication application(argc, argv);
  cli::Console console(std::cout, std::cerr, isatty(STDERR_FILENO) != 0);
  cli::ExitCode code = cli::ExitCode::kFailed;
  const auto fault = base::fault_of([&] { code = run(invocation, console); });
  if (fault) console.tell(fault->description(), fault->detail());
  return static_cast<int>(code);
}
