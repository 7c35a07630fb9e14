#include "adapters/files_posix.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <functional>

#include "adapters/temporary_suite.h"
#include "doubles/caught.h"

static bool files_are_busy = false;

// Stands before the system's own.
extern "C" int rename(const char* from, const char* to) noexcept {
  if (!files_are_busy) return ::renameat(AT_FDCWD, from, AT_FDCWD, to);
  errno = EBUSY;
  return -1;
}

namespace qvrcom::adapters {
namespace {

using doubles::fault_of;

class FilesPosixTest : public testing::Test {
 protected:
  std::string path(const std::string& name) const { return suite_path(folder_) + "\\" + name; }
  unsigned mode(const std::string& name) const {
    struct stat status {};
    stat((folder_ + "/" + name).c_str(), &status);
    return status.st_mode & 0777U;
  }
  std::size_t entries() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder_), {}));
  }
  const TemporaryFolder place_;
  const std::string& folder_ = place_.path;
  FilesPosix files_;
};

TEST_F(FilesPosixTest, AppendsAndReplaces) {
  files_.append(path("a.sch"), "one\r\n");
  files_.append(path("a.sch"), "two\r\n");
  EXPECT_EQ(files_.read(path("a.sch")), "one\r\ntwo\r\n");
  EXPECT_EQ(mode("a.sch"), 0600U);
  chmod((folder_ + "/a.sch").c_str(), 0640);
  files_.replace(path("a.sch"), "three");
  EXPECT_EQ(files_.read(path("a.sch")), "three");
  for (const char* line : {"four", "five"})
    files_.append_line(path("a.sch"), line);
  EXPECT_EQ(files_.read(path("a.sch")), "three\r\nfour\r\nfive\r\n");
  EXPECT_EQ(mode("a.sch"), 0640U);
  EXPECT_EQ(entries(), 1U);
  EXPECT_EQ(files_.length(path("a.sch")), 19U);
  EXPECT_EQ(files_.native(path("a.sch")), folder_ + "/a.sch");
}

// Nobody waits for a pipe's other end, and what lies behind a link is not ours to write.
TEST_F(FilesPosixTest, FollowsALinkOnlyWhereTheUserNamedIt) {
  files_.append(path("real"), "old");
  std::filesystem::create_symlink("real", folder_ + "/link");
  ASSERT_EQ(mkfifo((folder_ + "/pipe").c_str(), 0600), 0);
  const std::function<void(const std::string&)> ours[] = {
      [&](const std::string& name) { files_.append(name, "x"); },
      [&](const std::string& name) { files_.append_line(name, "x"); },
      [&](const std::string& name) { files_.replace(name, "x"); },
      [&](const std::string& name) { files_.copy(path("real"), name); },
      [&](const std::string& name) { files_.read(name); },
  };
  for (const auto& use : ours) {
    EXPECT_EQ(doubles::whole_fault_of([&] { use(path("link")); }),
              "Permission denied: \"" + folder_ + "/link\" is a link, which is not followed.");
    EXPECT_EQ(fault_of([&] { use(path("pipe")); }), "Path/File access error");
  }
  EXPECT_EQ(fault_of([&] { files_.load(path("pipe")); }), "Path/File access error");
  EXPECT_EQ(fault_of([&] { files_.save(path("pipe"), "x", platform::Readers::kOwner); }),
            "Path/File access error");
  std::filesystem::create_symlink("nothing", folder_ + "/astray");
  EXPECT_EQ(fault_of([&] { files_.save(path("astray"), "x", platform::Readers::kOwner); }), "Path not found");
  EXPECT_EQ(files_.list(path("")), std::vector<std::string>{"real"});

  EXPECT_EQ(files_.load(path("link")), "old");
  files_.save(path("link"), "new", platform::Readers::kEverybody);
  files_.copy(path("link"), path("copy"));
  EXPECT_TRUE(std::filesystem::is_symlink(folder_ + "/link"));
  EXPECT_EQ(files_.read(path("real")) + files_.read(path("copy")), "newnew");
}

TEST_F(FilesPosixTest, OthersMayNotWriteWhateverTheProcessWouldLetThem) {
  const mode_t before = umask(0);
  files_.append(path("a.log"), "");
  files_.replace(path("a.csv"), "");
  files_.make_folder(path("job"));
  umask(before);
  EXPECT_EQ(mode("a.log"), 0600U);
  EXPECT_EQ(mode("a.csv"), 0644U);
  EXPECT_EQ(mode("job"), 0700U);
}

TEST_F(FilesPosixTest, RemovesWhatKilledWritersLeft) {
  const pid_t killed = fork();
  if (killed == 0) _exit(0);
  waitpid(killed, nullptr, 0);
  const std::string dead = std::to_string(killed);
  const std::string live = ".a.sch." + std::to_string(getppid()) + ".new";
  for (const std::string& name : {".a.sch." + dead + ".new", live, ".b.sch." + dead + ".new"})
    files_.append(path(name), "half");
  files_.replace(path("a.sch"), "whole");
  std::vector<std::string> left = files_.list(path(""));
  std::sort(left.begin(), left.end());
  EXPECT_EQ(left, (std::vector<std::string>{live, ".b.sch." + dead + ".new", "a.sch"}));
}

TEST_F(FilesPosixTest, OpensANativePathAsItIsNamed) {
  for (const std::string name : {"a\\b.csv",
                                 "a\x1A"
                                 "b",
                                 "\x1A", "\\\\\x1A\\", "plain",
                                 "\x1A"
                                 "m\\"}) {
    const std::string native = folder_ + '/' + name;
    EXPECT_EQ(native_path(suite_path(native)), native);
    files_.save(files_.from_native(native), name, platform::Readers::kEverybody);
    EXPECT_TRUE(std::filesystem::is_regular_file(native)) << name;
    std::filesystem::remove(native);
  }
  EXPECT_EQ(files_.native(files_.from_native("x")), std::filesystem::current_path().string() + "/x");
  EXPECT_EQ(suite_path("/var/lib/x.csv"), "\\var\\lib\\x.csv");
}

TEST_F(FilesPosixTest, SavesForItsOwnerAloneWhateverWasThere) {
  files_.append(path("sites.csv"), "old");
  chmod((folder_ + "/sites.csv").c_str(), 0666);
  std::filesystem::create_hard_link(folder_ + "/sites.csv", folder_ + "/reader");
  files_.save(path("sites.csv"), "code", platform::Readers::kOwner);
  files_.save(path("new.csv"), "code", platform::Readers::kOwner);
  EXPECT_EQ(files_.read(path("sites.csv")), "code");
  EXPECT_EQ(mode("sites.csv"), 0600U);
  EXPECT_EQ(mode("new.csv"), 0600U);
  EXPECT_EQ(files_.read(path("reader")), "old") << "who has the old file open must not read the new text";
}

TEST_F(FilesPosixTest, KeepsWhatWasThereWhenTheDiskIsFull) {
  const std::string in_place(250, 'n');  // no name beside it would be short enough
  files_.append(path("index.sch"), "a line\r\n");
  files_.replace(path(in_place), "some content");
  files_.replace(path(in_place), "a line\r\n");
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit tight{12, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &tight);
  std::vector<std::string> faults;
  for (const std::string& name : {std::string("index.sch"), in_place}) {
    faults.push_back(fault_of([&] { files_.append(path(name), "another line\r\n"); }));
    faults.push_back(fault_of([&] { files_.replace(path(name), "a much longer content\r\n"); }));
  }
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(faults, std::vector<std::string>(4, "File too large"));
  EXPECT_EQ(files_.read(path("index.sch")), "a line\r\n");
  EXPECT_EQ(files_.read(path(in_place)), "a line\r\n");
  EXPECT_EQ(entries(), 2U);
}

TEST_F(FilesPosixTest, WritesABusyFileWhereItIs) {
  files_.append(path("a.sch"), "old and longer\r\n");
  files_are_busy = true;
  files_.replace(path("a.sch"), "new\r\n");
  files_are_busy = false;
  EXPECT_EQ(files_.read(path("a.sch")), "new\r\n");
  EXPECT_EQ(entries(), 1U);
}

TEST_F(FilesPosixTest, FoldersAndLists) {
  files_.make_folder(path("job"));
  EXPECT_EQ(mode("job"), 0700U);
  files_.append(path("job\\x.scr"), "");
  files_.make_folder(path("job\\sub"));
  EXPECT_EQ(files_.list(path("job")), std::vector<std::string>{"x.scr"});
  EXPECT_FALSE(files_.folder_exists(path("job\\x.scr")));
  EXPECT_FALSE(files_.file_exists(path("job")));
  EXPECT_EQ(fault_of([&] { files_.make_folder(path("none\\deeper")); }), "Path not found");
  EXPECT_EQ(doubles::whole_fault_of([&] { files_.read(path("none")); }),
            "File not found: Reading \"" + folder_ +
                "/none\": No such file or directory. Check that it is still there.");
  EXPECT_EQ(files_.read_or_empty(path("none")), "");
  EXPECT_EQ(fault_of([&] { files_.read_or_empty(path("job")); }), "Path/File access error");
  EXPECT_EQ(fault_of([&] { files_.list(path("none")); }), "Path not found");
  files_.remove(path("job\\x.scr"));
  EXPECT_EQ(doubles::whole_fault_of([&] { files_.remove_folder(path("job")); }),
            "Path/File access error: Removing the folder \"" + folder_ + "/job\": it still holds \"sub\".");
  files_.remove_folder(path("job\\sub"));
  files_.remove_folder(path("job"));
  EXPECT_EQ(entries(), 0U);
}

}  // namespace
}  // namespace qvrcom::adapters
