#include "adapters/device_connection_curl.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <thread>

#include "adapters/simulated_device.h"
#include "adapters/temporary_suite.h"
#include "doubles/caught.h"

namespace qvrcom::adapters {
namespace {

using namespace std::chrono_literals;
using doubles::caught;
using doubles::fault_of;
using platform::DeviceConnection;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

platform::DeviceLimits short_limits() {
  platform::DeviceLimits limits;
  limits.connect = 2s;
  limits.idle = 1500ms;
  limits.session = 10s;
  return limits;
}

class DeviceConnectionCurlTest : public testing::Test {
 protected:
  std::unique_ptr<DeviceConnection> connect(const SimulatedDevice& device,
                                            platform::DeviceLimits limits = short_limits()) {
    auto connection = make(limits);
    connection->login(login_to(device));
    return connection;
  }
  std::unique_ptr<DeviceConnection> make(platform::DeviceLimits limits = short_limits()) {
    return DeviceConnectionsCurl(files_).make(limits, [this](std::uint64_t bytes) { progress_ = bytes; });
  }
  static platform::DeviceLogin login_to(const SimulatedDevice& device) {
    return {"127.0.0.1", device.port(), "admin", SimulatedDevice::kPassword};
  }

  std::string native(const std::string& name) const { return folder_.path + "/" + name; }
  std::string local(const std::string& name) const { return suite_path(native(name)); }
  std::string content(const std::string& name) const { return files_.read(local(name)); }
  void write(const std::string& name, const std::string& text) { files_.replace(local(name), text); }

  TemporaryFolder folder_;
  FilesPosix files_;
  std::uint64_t progress_ = 0;
};

TEST_F(DeviceConnectionCurlTest, WorksInTheAccountOnOneConnection) {
  const SimulatedDevice device;
  const auto connection = connect(device);
  connection->account("part3");
  const std::uint64_t length = connection->get("allstats.csv", local("stats.csv"), 0);
  EXPECT_EQ(content("stats.csv").size(), length);
  EXPECT_EQ(progress_, length);
  EXPECT_GT(length, 100U);
  struct stat status {};
  stat(native("stats.csv").c_str(), &status);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  connection->remove("linestat");
  write("out", "twelve bytes");
  EXPECT_EQ(connection->put(local("out"), "dbase"), 12U);
  write("back", "old content");
  connection->get("dbase", local("back"), 0);
  EXPECT_EQ(content("back"), "twelve bytes");
  write("empty", "");
  connection->put(local("empty"), "dbase");
  EXPECT_EQ(connection->get("dbase", local("back"), 0), 0U);
  EXPECT_EQ(content("back"), "");
  connection->close();
  const auto commands = device.commands();
  EXPECT_EQ(std::ranges::count(commands, std::string("- USER admin 331")), 1);
  EXPECT_THAT(commands, Contains("part3 RETR allstats.csv 226"));
  EXPECT_THAT(commands, Contains("part3 DELE linestat 250"));
  EXPECT_THAT(commands.back(), HasSubstr("QUIT"));
}

// After a refusal or an incomplete file the session goes on in the account that was selected; after anything
// else it does not.
TEST_F(DeviceConnectionCurlTest, SaysWhatTheDeviceSaidOrWhyItCouldNot) {
  constexpr const char* kClosed = "The device closed the connection";
  constexpr const char* kSilent = "No byte came or went for 1500 ms";
  constexpr const char* kNoAnswer = "The device gave an answer that is none: ";
  const struct {
    const char* fault;
    std::string description;  // its beginning
    const char* detail;       // likewise
    bool alive = false;
  } rows[] = {
      {"login:530", "530 ", "Login as admin at 127.0.0.1 port "},
      {"connect:421", "421 ", "Login as admin"},
      {"ACCT#1:501", "501 ", "Selecting part3", true},
      {"ACCT#1:drop", kClosed, "Selecting part3"},
      {"ACCT#1:150", kNoAnswer + std::string("150 "), "Selecting part3"},
      {"ACCT#1:twice", "The device closed the connection, or said more than", "Fetching allstats.csv"},
      {"SIZE#1:size=-5", "The device tells no size of the file: 213 -5", "Fetching allstats.csv", true},
      {"SIZE#1:999", kNoAnswer + std::string("999 "), "Fetching allstats.csv"},
      {"SIZE#1:421", "421 ", "Fetching allstats.csv"},
      {"RETR#1:421", "421 ", "Fetching allstats.csv"},
      {"STOR#1:421", "421 ", "Sending dbase"},
      {"DELE#1:421", "421 ", "Deleting linestat"},
      {"RETR#1:550", "550 ", "Fetching allstats.csv", true},
      {"RETR#1:drop=100", kClosed, "Fetching allstats.csv, after 100 bytes"},
      {"RETR#1:reset=100", kClosed, "Fetching allstats.csv, after 100 bytes"},
      {"RETR#1:truncate=100", "The file is not whole, 100 bytes came of at least ", "Fetching allstats.csv",
       true},
      {"RETR#1:452=100", "452 ", "Fetching allstats.csv", true},
      {"RETR#1:350=100", kNoAnswer + std::string("350 "), "Fetching allstats.csv"},
      {"RETR#1:stall=100", kSilent, "Fetching allstats.csv"},
      {"RETR#1:silent", kSilent, "Fetching allstats.csv"},
      {"STOR#1:452=5", "452 ", "Sending dbase", true},
      {"STOR#1:drop=5", kClosed, "Sending dbase"},
      {"DELE#1:450", "450 ", "Deleting linestat", true},
      {"DELE#1:350", kNoAnswer + std::string("350 "), "Deleting linestat"},
  };
  write("out", "twelve bytes");
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fault);
    const SimulatedDevice device({row.fault});
    write("stats.csv", "what was there");
    const auto connection = make();
    const base::Fault fault = caught([&] {
      connection->login(login_to(device));
      connection->account("part3");
      connection->get("allstats.csv", local("stats.csv"), 0);
      write("stats.csv", "what was there");
      connection->put(local("out"), "dbase");
      connection->remove("linestat");
    });
    EXPECT_THAT(fault.description(), testing::StartsWith(row.description));
    EXPECT_THAT(fault.detail(), testing::StartsWith(row.detail));
    EXPECT_THAT(fault.description() + fault.detail(), Not(HasSubstr(SimulatedDevice::kPassword)));
    EXPECT_EQ(content("stats.csv"), "what was there");
    EXPECT_FALSE(std::filesystem::exists(native("stats.csv.part")));
    EXPECT_EQ(connection->alive(), row.alive);
    if (row.alive) {
      connection->account("part7");
      connection->put(local("out"), "after");
      EXPECT_THAT(device.commands(), Contains("part7 STOR after 226"));
    } else {
      EXPECT_NE(fault_of([&] { connection->remove("nodestat"); }), "");
    }
    EXPECT_LE(std::ranges::count(device.commands(), std::string("- USER admin 331")), 1);
    EXPECT_THAT(device.commands(), Not(Contains(HasSubstr("DELE nodestat"))));
  }
}

TEST_F(DeviceConnectionCurlTest, ReadsToTheEndWhateverIsAnnounced) {
  const std::uint64_t whole = connect(SimulatedDevice())->get("log", local("whole"), 0);
  for (const std::vector<std::string>& faults : std::vector<std::vector<std::string>>{
           {"SIZE:size=10", "RETR:size=10"}, {"SIZE:500", "RETR:size=10"}}) {
    const SimulatedDevice device(faults);
    EXPECT_EQ(connect(device)->get("log", local("log"), 0), whole);
    EXPECT_EQ(content("log"), content("whole"));
  }
}

TEST_F(DeviceConnectionCurlTest, AFileThatIsNotWholeMayBeFetchedAgain) {
  const SimulatedDevice device({"RETR#1:truncate=100", "SIZE#3:size=0", "RETR#3+:truncate=0", "SIZE#4+:550"});
  const auto connection = connect(device);
  EXPECT_THROW(connection->get("log", local("log"), 0), platform::IncompleteFile);
  EXPECT_GT(connection->get("log", local("log"), 0), 100U);
  EXPECT_THROW(connection->get("log", local("log"), 1), platform::IncompleteFile);
  EXPECT_NE(content("log"), "");
  EXPECT_EQ(connection->get("log", local("log"), 0), 0U);
}

TEST_F(DeviceConnectionCurlTest, HidesThePasswordWhereTheDeviceSaysIt) {
  const SimulatedDevice device({"login:530"});
  const auto refusal = [&](const std::string& password) {
    return fault_of([&] { make()->login({"127.0.0.1", device.port(), "admin", password}); });
  };
  EXPECT_EQ(refusal("request"), "530 Refused on ***.");
  EXPECT_EQ(refusal("on"), "The device refused the login; its words are left out");
  EXPECT_EQ(refusal(""), "530 Refused on request.");
}

TEST_F(DeviceConnectionCurlTest, KeepsItsLimits) {
  const SimulatedDevice device;
  auto limits = short_limits();
  limits.largest_file = 50;
  const auto connection = connect(device, limits);
  connection->account("part3");
  write("out", std::string(51, 'x'));
  EXPECT_EQ(fault_of([&] { connection->put(local("out"), "dbase"); }), "The file is larger than 50 bytes");
  EXPECT_EQ(fault_of([&] { connection->get("allstats.csv", local("in"), 0); }),
            "The file is larger than 50 bytes");
  EXPECT_FALSE(std::filesystem::exists(native("in")));

  limits.session = 1ms;
  EXPECT_EQ(fault_of([&] {
              const auto late = make(limits);
              late->login(login_to(device));
              std::this_thread::sleep_for(2ms);
              late->account("part3");
            }),
            "The session took longer than 1 ms");
  const auto nobody = make();
  EXPECT_EQ(fault_of([&] { nobody->login({"127.0.0.1", 1, "admin", "x"}); }), "No connection to the device");
  EXPECT_EQ(fault_of([&] { nobody->login({"127.0.0.1/x", 1, "admin", "x"}); }), "The address is none");
  EXPECT_NE(fault_of([&] { nobody->account("part3\r\nDELE x"); }), "");
}

TEST_F(DeviceConnectionCurlTest, FollowsNoLinkAndWritesNoFileThatItCannot) {
  const SimulatedDevice device;
  const auto connection = connect(device);
  write("outside", "secret");
  std::filesystem::create_symlink(native("outside"), native("link"));
  EXPECT_EQ(fault_of([&] { connection->put(local("link"), "dbase"); }), "Permission denied");
  connection->get("log", local("link"), 0);
  EXPECT_EQ(content("outside"), "secret");
  EXPECT_FALSE(std::filesystem::is_symlink(native("link")));
  EXPECT_EQ(fault_of([&] { connection->get("log", local("missing") + "\\x", 0); }), "File not found");
}

TEST_F(DeviceConnectionCurlTest, AFullDiskLeavesNothing) {
  const SimulatedDevice device;
  const auto connection = connect(device);
  connection->account("part3");
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, SIG_IGN);
  const rlimit little{100, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &little);
  const base::Fault fault = caught([&] { connection->get("allstats.csv", local("stats.csv"), 0); });
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(fault.description(), "File too large");
  EXPECT_THAT(fault.detail(), testing::StartsWith("Fetching allstats.csv. Writing "));
  EXPECT_TRUE(std::filesystem::is_empty(folder_.path));
}

TEST_F(DeviceConnectionCurlTest, IsCancelledAtOnce) {
  for (const char* fault : {"RETR:stall=100", "RETR:silent"}) {
    SCOPED_TRACE(fault);
    const SimulatedDevice device({fault});
    auto limits = short_limits();
    limits.idle = 20s;
    const auto connection = connect(device, limits);
    connection->account("part3");
    std::thread other([&] {
      std::this_thread::sleep_for(100ms);
      connection->cancel();
    });
    EXPECT_THROW(connection->get("allstats.csv", local("stats.csv"), 0), platform::SessionCancelled);
    other.join();
    EXPECT_THROW(connection->remove("linestat"), platform::SessionCancelled);
  }
}

}  // namespace
}  // namespace qvrcom::adapters
