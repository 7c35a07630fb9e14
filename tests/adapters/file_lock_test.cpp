#include <gmock/gmock.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <csignal>
#include <fstream>
#include <thread>

#include "adapters/dialer_process.h"
#include "adapters/file_lock.h"
#include "adapters/local_socket.h"
#include "adapters/temporary_suite.h"
#include "doubles/caught.h"

namespace qvrcom::adapters {
namespace {

using doubles::fault_of;
using namespace std::chrono_literals;

struct FileLockTest : testing::Test {
  FileLockTest() { need_application(); }
  void write(const std::string& bytes) const { std::ofstream(path, std::ios::binary) << bytes; }

  TemporaryFolder folder;
  const std::string path = folder.path + "/session.lock";
};

TEST_F(FileLockTest, WhatStandsInTheFileKeepsNobodyOut) {
  const std::string mine = "tests (process " + std::to_string(getpid()) + ")";
  const std::string left[] = {"",
                              std::string(40, '\0'),
                              "47",
                              "4711\nqvrcom\nanother-machine\n\n",
                              std::to_string(getpid()) + "\ntests\nthis-machine\n",
                              std::to_string(getppid()) + "\nqvrcom\n"};
  for (const std::string& bytes : left) {
    write(bytes);
    auto lock = FileLock::try_take(path);
    ASSERT_TRUE(lock) << bytes;
    EXPECT_FALSE(FileLock::try_take(path)) << "this program has it already";
    EXPECT_EQ(FileLock::owner(path), mine);
    lock.reset();
    EXPECT_TRUE(std::filesystem::exists(path)) << "others may wait on it";
  }
  write("2147483646\ngone\n");
  EXPECT_EQ(FileLock::owner(path), "another program");
}

TEST_F(FileLockTest, ProgramsThatItsHolderStartsDoNotInheritIt) {
  auto lock = FileLock::try_take(path);
  pid_t child = 0;
  std::string words[] = {"sleep", "60"};
  char* arguments[] = {words[0].data(), words[1].data(), nullptr};
  ASSERT_EQ(posix_spawnp(&child, "sleep", nullptr, nullptr, arguments, environ), 0);
  lock.reset();
  EXPECT_EQ(fault_of([&] { FileLock::take(path, "Taking it", std::chrono::seconds(2)); }), "");
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
}

TEST_F(FileLockTest, RefusesWhatIsNoFileOfOurs) {
  std::filesystem::create_symlink("elsewhere", path);
  EXPECT_EQ(fault_of([&] { FileLock::try_take(path); }), "Permission denied");
  std::filesystem::remove(path);
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  EXPECT_EQ(fault_of([&] { FileLock::try_take(path); }), "Path/File access error");
  EXPECT_EQ(fault_of([&] { OwnedServer(QString::fromStdString(path)); }), "Path/File access error");
}

TEST_F(FileLockTest, WhatAKilledProgramOrAPowerFailureLeftOfASocketIsTakenOver) {
  const auto serves = [this] {
    const OwnedServer server(QString::fromStdString(path));
    return socket_is_served(QString::fromStdString(path));
  };
  write("");
  EXPECT_TRUE(serves());
  const Descriptor dead(socket(AF_UNIX, SOCK_STREAM, 0));
  sockaddr_un address{AF_UNIX, {}};
  path.copy(address.sun_path, path.size());
  ASSERT_EQ(bind(dead.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ASSERT_FALSE(socket_is_served(QString::fromStdString(path)));
  EXPECT_TRUE(serves());
}

class DialerProcessTest : public testing::Test {
 protected:
  std::string program(const std::string& body) const {
    const std::string path = folder_.filePath("dial").toStdString();
    std::ofstream(path) << "#!/bin/sh\n" << body << "\n";
    chmod(path.c_str(), 0700);
    return path;
  }
  std::string dial(const std::string& path, std::chrono::milliseconds limit = 10s) {
    return doubles::fault_of(
        [&] { DialerProcess().dial(path, "Branch; office", "$(0123)", limit, cancelled_); });
  }

  QTemporaryDir folder_;
  std::atomic<bool> cancelled_{false};
};

TEST_F(DialerProcessTest, HandsOverBothTextsAndReportsTheEnd) {
  EXPECT_EQ(dial(program("test \"$#/$1/$2\" = '2/Branch; office/$(0123)'")), "");
  EXPECT_EQ(dial(program("exit 3")), "The dial command ended with code 3");
  EXPECT_EQ(dial(program("kill -9 $$")), "The dial command was ended by a signal");
  EXPECT_EQ(dial(folder_.filePath("missing").toStdString()), "No such file or directory");
}

TEST_F(DialerProcessTest, WaitsNoLongerThanItMay) {
  EXPECT_EQ(dial(program("exec sleep 20"), 50ms), "The dial command took too long");
  std::thread other([this] {
    std::this_thread::sleep_for(50ms);
    cancelled_ = true;
  });
  EXPECT_EQ(dial(program("exec sleep 20")), "Cancelled");
  other.join();
}

}  // namespace
}  // namespace qvrcom::adapters
