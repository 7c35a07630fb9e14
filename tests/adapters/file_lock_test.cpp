#include "adapters/file_lock.h"

#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "adapters/local_socket.h"
#include "adapters/temporary_suite.h"
#include "doubles/caught.h"

namespace qvrcom::adapters {
namespace {

using doubles::fault_of;

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

TEST_F(FileLockTest, ASocketThatAPowerFailureTurnedIntoAFileIsTakenOver) {
  write("");
  const OwnedServer server(QString::fromStdString(path));
  EXPECT_TRUE(socket_is_served(QString::fromStdString(path)));
}

}  // namespace
}  // namespace qvrcom::adapters
