#include "adapters/files_posix.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

#include "adapters/temporary_suite.h"
#include "doubles/caught.h"

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
  EXPECT_EQ(mode("a.sch"), 0640U);
  EXPECT_EQ(entries(), 1U);
  EXPECT_EQ(files_.length(path("a.sch")), 5U);
  EXPECT_EQ(files_.native(path("a.sch")), folder_ + "/a.sch");
}

TEST_F(FilesPosixTest, ReplacesTheFileBehindALink) {
  files_.append(path("real"), "old");
  std::filesystem::create_symlink("real", folder_ + "/link");
  files_.replace(path("link"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(folder_ + "/link"));
  EXPECT_EQ(files_.read(path("real")), "new");
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
  files_.append(path("index.sch"), "a line\r\n");
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit tight{12, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &tight);
  const std::string appended = fault_of([&] { files_.append(path("index.sch"), "another line\r\n"); });
  const std::string replaced =
      fault_of([&] { files_.replace(path("index.sch"), "a much longer content\r\n"); });
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(appended, "File too large");
  EXPECT_EQ(replaced, "File too large");
  EXPECT_EQ(files_.read(path("index.sch")), "a line\r\n");
  EXPECT_EQ(entries(), 1U);
}

TEST_F(FilesPosixTest, FoldersAndLists) {
  files_.make_folder(path("job"));
  EXPECT_EQ(mode("job"), 0700U);
  files_.append(path("job\\x.scr"), "");
  files_.make_folder(path("job\\sub"));
  EXPECT_EQ(files_.list(path("job")), std::vector<std::string>{"x.scr"});
  EXPECT_TRUE(files_.folder_exists(path("job\\")));
  EXPECT_FALSE(files_.folder_exists(path("job\\x.scr")));
  EXPECT_FALSE(files_.file_exists(path("job")));
  EXPECT_EQ(fault_of([&] { files_.remove_folder(path("job")); }), "Path/File access error");
  EXPECT_EQ(fault_of([&] { files_.make_folder(path("none\\deeper")); }), "Path not found");
  EXPECT_EQ(doubles::whole_fault_of([&] { files_.read(path("none")); }),
            "File not found: Reading \"" + folder_ +
                "/none\": No such file or directory. Check that it is still there.");
  EXPECT_EQ(fault_of([&] { files_.read(path("job")); }), "Path/File access error");
  EXPECT_EQ(fault_of([&] { files_.list(path("none")); }), "Path not found");
  files_.remove(path("job\\x.scr"));
  files_.remove_folder(path("job\\sub"));
  files_.remove_folder(path("job"));
  EXPECT_EQ(entries(), 0U);
}

TEST_F(FilesPosixTest, ReadsNoPipeForEver) {
  ASSERT_EQ(mkfifo((folder_ + "/pipe").c_str(), 0600), 0);
  EXPECT_EQ(fault_of([&] { files_.read(path("pipe")); }), "Path/File access error");
}

}  // namespace
}  // namespace qvrcom::adapters
