#include "adapters/dialer_process.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QTemporaryDir>
#include <fstream>
#include <thread>

#include "doubles/caught.h"

namespace qvrcom::adapters {
namespace {

using namespace std::chrono_literals;

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
