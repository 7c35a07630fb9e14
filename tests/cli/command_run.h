#pragma once

#include <stdlib.h>

#include <QCoreApplication>
#include <QTemporaryDir>
#include <csignal>
#include <sstream>
#include <string>
#include <vector>

#include "adapters/byte_source_posix.h"
#include "adapters/qt_application.h"
#include "cli/command_context.h"
#include "cli/invocation.h"
#include "doubles/manual_scheduler.h"
#include "programs/suite.h"

namespace qvrcom::cli {

// A session dialog that ends at once: it leaves a file and "Completed", unless the partition is to fail.
// Tidying up behind the untidy one fails.
struct FakeScreen : session::SessionScreen {
  session::SessionResult show_modal() override {
    const base::RunValues& run = suite->session.run;
    shown.push_back(suite->session.site.UserSiteID + "/" + run.PartitionID + " " + run.CurrentOperation);
    if (run.PartitionID == interrupted_partition) std::raise(SIGINT);
    QCoreApplication::processEvents();
    const bool fails = run.PartitionID == failing_partition;
    suite->session.run.SessionStatus = fails ? "Error" : "Completed";
    if (fails) suite->ui.show({.text = "went wrong", .title = "ERROR"});
    if (fails) return {};
    if (run.PartitionID == untidy_partition)
      platform::Trap(suite->ui)("Remove_Folder", [] { throw base::Fault(base::kFileNotFound); });
    suite->session.run.StatsResultFile = "\\stats\\P" + run.PartitionID + ".csv";
    suite->session.received.MessageNumbers = {"001", "\x1b[31m", ""};  // the last is the spare one
    return {.partition_files = {{1, "\\stats\\P1.csv"}, {8, "\\stats\\P8.csv"}},
            .same_log = "\\same\\" + suite->session.site.UserSiteID + ".log",
            .missing = {}};
  }
  session::SessionResult show_late_outcome() override { return {}; }
  programs::Suite* suite = nullptr;
  std::string failing_partition = "none";
  std::string untidy_partition = "none";
  std::string interrupted_partition = "none";
  std::vector<std::string> shown;
};

// A terminal at a session that is there at once.
struct FakeTerminal : platform::Terminal {
  void attach(const std::string&, platform::TerminalEvents given) override {
    events = std::move(given);
    events.attached();
  }
  void send(std::string_view bytes) override { sent += bytes; }
  std::size_t unsent() const override { return waiting; }
  void resize(std::uint16_t, std::uint16_t) override {}
  void leave() override { left = true; }
  platform::TerminalEvents events;
  std::string sent;
  std::size_t waiting = 0;
  bool left = false;
};

// Runs command lines in this process, below a root of their own, on real files and a real database.
class CommandRun {
 public:
  CommandRun() {
    adapters::need_application();
    for (const char* variable : kFolders)
      setenv(variable, root.path().toUtf8().constData(), 1);
  }
  ~CommandRun() {
    for (const char* variable : kFolders)
      unsetenv(variable);
  }

  // Returns the exit code; what was written is in `out` and `err`.
  int operator()(std::vector<std::string> arguments, const std::string& input = {}) {
    std::ostringstream out_stream;
    std::ostringstream err_stream;
    const Invocation invocation = read_command_line(std::move(arguments), "1.2.3", out_stream, err_stream);
    ExitCode code = invocation.exit_code;
    if (invocation.command) code = run_command(invocation, input, out_stream, err_stream);
    out = out_stream.str();
    err = err_stream.str();
    return static_cast<int>(code);
  }

  std::string path(const std::string& name) const { return root.filePath(name.c_str()).toStdString(); }

  QTemporaryDir root;
  doubles::ManualScheduler scheduler;
  FakeScreen screen;
  std::string out;
  std::string err;

 private:
  static constexpr const char* kFolders[] = {"QVRCOM_ROOT", "XDG_RUNTIME_DIR"};

  ExitCode run_command(const Invocation& invocation, const std::string& input, std::ostream& out_stream,
                       std::ostream& err_stream) {
    Console console(out_stream, err_stream, false);
    ConsoleUserInterface ui(console, invocation.answer);
    programs::Suite suite(ui);
    screen.suite = &suite;
    ConsoleSessions sessions(console, ui, suite.clock);
    const requests::SessionRequestParts requests = suite.request_parts(screen);
    SessionBatch batch(console, ui, sessions, requests);
    FakeTerminal terminal;
    TelnetTerminal telnet(console, terminal, -1);
    environment::SetUp set_up = suite.set_up();
    const adapters::ByteSourcesPosix byte_sources;
    std::istringstream in(input);
    CommandContext context{console,
                           in,
                           ui,
                           suite.clock,
                           suite.files,
                           suite.programs,
                           scheduler,
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
    return run(invocation, context);
  }
};

}  // namespace qvrcom::cli
