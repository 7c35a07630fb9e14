#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "adapters/device_connection_curl.h"
#include "adapters/dialer_process.h"
#include "adapters/message_channel_local.h"
#include "adapters/scheduler_control_local.h"
#include "adapters/terminal_relay_local.h"
#include "base/fault.h"
#include "cli/arguments.h"
#include "programs/host.h"
#include "protocol/messages.h"
#include "scheduler/scheduler_engine.h"

namespace {

using namespace qvrcom;

enum ExitCode { kDone = 0, kRefused = 1, kNoSetUp = 3 };

constexpr auto kResultsTaken = static_cast<std::int64_t>(protocol::SchedulerRequest::kResultsTaken);
constexpr int kAnswerTime = 250;  // milliseconds between two answers
constexpr int kFlushTime = 100;   // for the last bytes of the control socket
constexpr int kLingerTime =
    600;  // behind a stop: for a dialog that is not yet listening to hear how its job ended
constexpr int kStopLimit = 800;  // for the session to end; then it is left behind

std::array<int, 2> signal_pipe{-1, -1};

// A relative folder of the environment would mean another one below "/".
void settle_environment() {
  for (const char* name : {"QVRCOM_ROOT", "XDG_RUNTIME_DIR", "TMPDIR"}) {
    const char* value = std::getenv(name);
    if (value == nullptr || *value == '\0' || *value == '/') continue;
    std::error_code error;
    const auto absolute = std::filesystem::absolute(value, error);
    if (!error) ::setenv(name, absolute.c_str(), 1);
  }
}

// Nothing of whoever started this program is held: no file, no folder, no keyboard. Standard output and error
// stay, but never become a file or socket of this program because they were closed.
void leave_the_starter() {
  settle_environment();
  if (::close_range(3, ~0U, 0) != 0) {
    for (int file = 3; file < ::getdtablesize(); ++file)
      ::close(file);
  }
  const int nothing = ::open("/dev/null", O_RDWR);
  ::dup2(nothing, STDIN_FILENO);
  for (const int file : {STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(file, F_GETFD) < 0) ::dup2(nothing, file);
  }
  if (nothing > STDERR_FILENO) ::close(nothing);
  [[maybe_unused]] const int left = ::chdir("/");
}

// This program's memory holds access codes: no core of it is written, and no other program of the user reads
// it.
void keep_memory_private() {
  const rlimit none{0, 0};
  ::setrlimit(RLIMIT_CORE, &none);
  ::prctl(PR_SET_DUMPABLE, 0);
}

void on_signal(int) {
  const char byte = 0;
  [[maybe_unused]] const ssize_t written = ::write(signal_pipe[1], &byte, 1);
}

void say(const base::Fault& fault) {
  std::fprintf(stderr, "JobPilot: %s\n  %s\n", fault.description().c_str(), fault.detail().c_str());
}

// The scheduler program around its engine: events in, timers, and what is asked over the control socket.
class JobPilot : public platform::SchedulerControl {
 public:
  explicit JobPilot(programs::Host& host, platform::MessageChannel& channel)
      : host_(host),
        devices_(host.files),
        terminals_(host.layout.run_folder, host.layout.runtime_folder),
        engine_(parts(channel)) {
    answers_.setInterval(kAnswerTime);
    QObject::connect(&answers_, &QTimer::timeout, &context_, [this] {
      engine_.repeat();
      follow();
    });
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
      std::signal(signal, on_signal);
    QObject::connect(&signals_, &QSocketNotifier::activated, &context_, [this] {
      for (char byte = 0; ::read(signal_pipe[0], &byte, 1) > 0;) {
      }
      stop();
    });
  }

  void begin() {
    engine_.list_interrupted();
    follow();
  }

  void request(std::int64_t code) {
    engine_.request(code);
    follow();
    if (stopping_ && !engine_.running() && code == kResultsTaken) leave_in(kFlushTime);
  }

  platform::StatusAnswer status() override {
    protocol::SchedulerStatus status = engine_.status();
    status.version = QVRCOM_VERSION;
    status.process = QCoreApplication::applicationPid();
    return {platform::Reach::kAnswered, std::move(status)};
  }

  // Answers at once; the program ends when the session has.
  platform::Reach stop() override {
    if (!std::exchange(stopping_, true)) {
      since_stop_.start();
      engine_.stop();
      QTimer::singleShot(kStopLimit, &context_, [this] { stop_waiting(); });
      follow();
    }
    return platform::Reach::kAnswered;
  }

  platform::StopOutcome stop_job(const std::string& job_name) override {
    const platform::StopOutcome outcome = engine_.stop_job(job_name);
    follow();
    return outcome;
  }

  // A session that did not end in time still uses this program's parts: they must not be destroyed.
  bool left_a_session_behind() const { return left_behind_; }

 private:
  scheduler::EngineParts parts(platform::MessageChannel& channel) {
    scheduler::SettingsReading reading = scheduler::read_settings(host_.machine);
    scheduler::RunLog log(host_.files, host_.clock, host_.folders.GetLogsFolder());
    for (const std::string& complaint : reading.complaints)
      log.write(scheduler::RunLog::kProgram, complaint);
    return {host_.files,
            host_.clock,
            channel,
            {devices_, terminals_, dialer_, host_.files},
            host_.folders.GetSchedulerFolder(),
            host_.folders.GetLogsFolder(),
            std::move(reading.settings),
            [this] { wake(); }};
  }

  // On the session's thread: a thousand events are one tick.
  void wake() {
    if (woken_.exchange(true)) return;
    QMetaObject::invokeMethod(
        &context_,
        [this] {
          woken_ = false;
          engine_.tick();
          follow();
        },
        Qt::QueuedConnection);
  }

  void follow() {
    if (engine_.repeating() != answers_.isActive()) engine_.repeating() ? answers_.start() : answers_.stop();
    if (!stopping_ || engine_.running() || std::exchange(leaving_, true)) return;
    const int lingered = static_cast<int>(std::min<qint64>(since_stop_.elapsed(), kLingerTime));
    leave_in(engine_.answering() ? std::max(kFlushTime, kLingerTime - lingered) : kFlushTime);
  }

  void stop_waiting() {
    left_behind_ = engine_.leave_session_behind();
    follow();
  }

  void leave_in(int milliseconds) { QTimer::singleShot(milliseconds, &context_, &QCoreApplication::quit); }

  programs::Host& host_;
  QObject context_;
  QTimer answers_;
  QSocketNotifier signals_{signal_pipe[0], QSocketNotifier::Read};
  std::atomic<bool> woken_{false};
  bool stopping_ = false;
  bool leaving_ = false;
  bool left_behind_ = false;
  QElapsedTimer since_stop_;
  adapters::DeviceConnectionsCurl devices_;
  adapters::TerminalRelaysLocal terminals_;
  adapters::DialerProcess dialer_;
  scheduler::SchedulerEngine engine_;
};

int run() {
  programs::Host host;
  adapters::MessageChannelLocal channel(host.layout.run_folder, host.layout.runtime_folder);
  // The title comes first: whoever started this program looks for it.
  std::unique_ptr<platform::Window> window;
  const auto fault = base::fault_of([&] { window = channel.open_window(protocol::kJobPilotTitle, {}); });
  if (fault) {
    say(base::Fault("It runs already, or its window cannot be opened. Nothing was started.",
                    fault->detail()));
    return kRefused;
  }
  if (!host.files.folder_exists(host.folders.GetSchedulerFolder())) {
    say(base::Fault("There is no set-up on this machine.", "Run \"qvrcomctl setup\" first."));
    return kNoSetUp;
  }
  // A second one with another run folder has another socket, but must not work on the same lists.
  const std::string lock_file = host.scheduler_folder() + "/JobPilot.lock";
  const auto lock = adapters::FileLock::try_take(lock_file);
  if (!lock) {
    say(base::Fault("Another JobPilot works on \"" + host.scheduler_folder() + "\". Nothing was started.",
                    adapters::FileLock::owner(lock_file) +
                        " has it, with another run folder (QVRCOM_ROOT, XDG_RUNTIME_DIR). End it there, or "
                        "start this program as that one was started."));
    return kRefused;
  }
  JobPilot pilot(host, channel);
  const platform::MessageId message = channel.register_message(protocol::kSchedulerMessage);
  window->replace_procedure(
      [&](platform::WindowHandle, platform::MessageId id, std::uint64_t, std::int64_t code) {
        if (id == message) pilot.request(code);
        return std::int64_t{0};
      });
  auto control = std::make_unique<adapters::SchedulerControlServer>(host.layout.run_folder,
                                                                    host.layout.runtime_folder, pilot);
  pilot.begin();
  const int code = QCoreApplication::exec();
  if (!pilot.left_a_session_behind()) return code;
  control.reset();
  window.reset();
  std::_Exit(code);
}

std::optional<cli::ExitCode> read_arguments(std::vector<std::string> arguments) {
  CLI::App app(
      "Runs the jobs of \"index.sch\" against their devices. It has no window and stays until it is "
      "stopped:\n"
      "\"qvrcomctl scheduler stop\", SIGTERM or Ctrl-C.",
      "JobPilot");
  app.set_version_flag("-v,--version", "JobPilot " QVRCOM_VERSION);
  return cli::read_arguments(app, std::move(arguments), std::cout, std::cerr);
}

}  // namespace

int main(int argument_count, char** arguments) {
  ::umask(0077);
  if (const auto end = read_arguments({arguments + 1, arguments + argument_count}))
    return static_cast<int>(*end);
  leave_the_starter();
  keep_memory_private();
  QCoreApplication application(argument_count, arguments);
  if (::pipe2(signal_pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) return kRefused;
  int code = kRefused;
  if (const auto fault = base::fault_of([&] { code = run(); })) say(*fault);
  return code;
}
