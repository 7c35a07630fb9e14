#include "adapters/dialer_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <optional>
#include <thread>

#include "platform/device_connection.h"

extern char** environ;

namespace qvrcom::adapters {
namespace {

using base::Fault;

constexpr auto kLookTime = std::chrono::milliseconds(10);

// The program without a terminal, its output thrown away.
pid_t start(const std::string& program, const std::string& connection, const std::string& number) {
  std::array<std::string, 3> texts{program, connection, number};
  std::array<char*, 4> arguments{texts[0].data(), texts[1].data(), texts[2].data(), nullptr};
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t process = 0;
  const int code = ::posix_spawn(&process, program.c_str(), &files, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&files);
  if (code != 0) throw Fault(std::strerror(code), "Starting the dial command \"" + program + "\"");
  return process;
}

// Ends the program when it is still running; never leaves it behind unwaited for.
class Child {
 public:
  explicit Child(pid_t process) : process_(process) {}
  ~Child() {
    if (ended_) return;
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  std::optional<int> status() {
    int status = 0;
    if (::waitpid(process_, &status, WNOHANG) != process_) return std::nullopt;
    ended_ = true;
    return status;
  }

 private:
  pid_t process_;
  bool ended_ = false;
};

}  // namespace

void DialerProcess::dial(const std::string& program, const std::string& connection, const std::string& number,
                         std::chrono::milliseconds limit, const std::atomic<bool>& cancelled) {
  const std::string tried = "Dialling " + connection;
  const auto began = std::chrono::steady_clock::now();
  Child child(start(program, connection, number));
  std::optional<int> status;
  while (!(status = child.status())) {
    if (cancelled) throw platform::SessionCancelled(tried);
    if (std::chrono::steady_clock::now() - began > limit)
      throw Fault("The dial command took too long", tried);
    std::this_thread::sleep_for(kLookTime);
  }
  if (WIFEXITED(*status) && WEXITSTATUS(*status) == 0) return;
  throw Fault(WIFEXITED(*status) ? "The dial command ended with code " + std::to_string(WEXITSTATUS(*status))
                                 : std::string("The dial command was ended by a signal"),
              tried);
}

}  // namespace qvrcom::adapters
