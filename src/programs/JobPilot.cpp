#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>

#include "adapters/device_connection_curl.h"
#include "adapters/dialer_process.h"
#include "adapters/message_channel_local.h"
#include "adapters/scheduler_control_local.h"
#include "adapters/terminal_relay_local.h"
#include "base/fault.h"
#include "environment/names.h"
#include "programs/host.h"
#include "scheduler/scheduler_engine.h"

namespace {

using namespace qvrcom;

enum ExitCode { kDone = 0, kRefused = 1, kNoSetUp = 3 };

constexpr const char* kTitle = "JOBPILOT";
constexpr std::int64_t kResultsTaken = 2;
constexpr int kAnswerTime = 250;  // milliseconds between two answers
constexpr int kFlushTime = 100;   // for the last bytes of the control socket
constexpr int kLingerTime = 600;  // for a dialog that is not yet listening to hear how its job ended

std::array<int, 2> signal_pipe{-1, -1};

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
    QObject::connect(&answers_, &QTimer::timeout, &context_, [this] { engine_.repeat_answer(); });
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
      std::signal(signal, on_signal);
    QObject::connect(&signals_, &QSocketNotifier::activated, &context_, [this] { stop(); });
  }

  void request(std::int64_t code) {
    engine_.request(code);
    follow();
    if (stopping_ && code == kResultsTaken)
      QTimer::singleShot(kFlushTime, &context_, &QCoreApplication::quit);
  }

  std::optional<platform::SchedulerStatus> status() override {
    platform::SchedulerStatus status = engine_.status();
    status.version = QVRCOM_VERSION;
    status.process = QCoreApplication::applicationPid();
    return status;
  }

  bool stop() override {
    stopping_ = true;
    engine_.stop();
    follow();
    QTimer::singleShot(engine_.answering() ? kLingerTime : kFlushTime, &context_, &QCoreApplication::quit);
    return true;
  }

  platform::StopOutcome stop_job(const std::string& job_name) override {
    const platform::StopOutcome outcome = engine_.stop_job(job_name);
    follow();
    return outcome;
  }

 private:
  scheduler::EngineParts parts(platform::MessageChannel& channel) {
    scheduler::SettingsReading reading = scheduler::read_settings(host_.machine);
    scheduler::SessionLog log(host_.files, host_.clock, host_.folders.GetLogsFolder());
    for (const std::string& complaint : reading.complaints)
      log.write(scheduler::SessionLog::kProgram, complaint);
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
    if (engine_.answering() == answers_.isActive()) return;
    engine_.answering() ? answers_.start() : answers_.stop();
  }

  programs::Host& host_;
  QObject context_;
  QTimer answers_;
  QSocketNotifier signals_{signal_pipe[0], QSocketNotifier::Read};
  std::atomic<bool> woken_{false};
  bool stopping_ = false;
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
  try {
    window = channel.open_window(kTitle, {});
  } catch (const base::Fault& fault) {
    say(base::Fault("It runs already, or its window cannot be opened. Nothing was started.", fault.detail()));
    return kRefused;
  }
  if (!host.files.folder_exists(host.folders.GetSchedulerFolder())) {
    say(base::Fault("There is no set-up on this machine.", "Run \"qvrcomctl setup\" first."));
    return kNoSetUp;
  }
  JobPilot pilot(host, channel);
  const platform::MessageId message = channel.register_message(environment::kSchedulerMessage);
  window->replace_procedure(
      [&](platform::WindowHandle, platform::MessageId id, std::uint64_t, std::int64_t code) {
        if (id == message) pilot.request(code);
        return std::int64_t{0};
      });
  const adapters::SchedulerControlServer control(host.layout.run_folder, host.layout.runtime_folder, pilot);
  return QCoreApplication::exec();
}

void read_arguments(const QCoreApplication& application) {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      "Runs the jobs of \"index.sch\" against their devices. It has no window and "
      "stays until it is stopped:\n\"qvrcomctl scheduler stop\", SIGTERM or Ctrl-C.");
  parser.addHelpOption();
  parser.addVersionOption();
  parser.process(application);
}

}  // namespace

int main(int argument_count, char** arguments) {
  ::umask(0077);
  QCoreApplication application(argument_count, arguments);
  QCoreApplication::setApplicationVersion(QVRCOM_VERSION);
  read_arguments(application);
  if (::pipe2(signal_pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) return kRefused;
  try {
    return run();
  } catch (const base::Fault& fault) {
    say(fault);
    return kRefused;
  }
}
