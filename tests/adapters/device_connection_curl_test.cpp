#include "adapters/device_connection_curl.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <QTemporaryDir>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

#include "adapters/files_posix.h"
#include "adapters/paths.h"
#include "adapters/simulated_device.h"
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
  limits.connect = 700ms;
  limits.idle = 600ms;
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

  std::string native(const std::string& name) const { return folder_.filePath(name.c_str()).toStdString(); }
  std::string local(const std::string& name) const { return suite_path(native(name)); }
  std::string content(const std::string& name) const {
    std::ifstream file(native(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void write(const std::string& name, const std::string& text) const {
    std::ofstream(native(name), std::ios::binary) << text;
  }

  QTemporaryDir folder_;
  FilesPosix files_;
  std::uint64_t progress_ = 0;
};

TEST_F(DeviceConnectionCurlTest, WorksInTheAccountOnOneConnection) {
  const SimulatedDevice device;
  const auto connection = connect(device);
  connection->account("part3");
  const std::uint64_t length = connection->get("allstats.csv", local("stats.csv"));
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
  connection->get("dbase", local("back"));
  EXPECT_EQ(content("back"), "twelve bytes");
  write("empty", "");
  connection->put(local("empty"), "dbase");
  EXPECT_EQ(connection->get("dbase", local("back")), 0U);
  EXPECT_EQ(content("back"), "");
  connection->close();
  const auto commands = device.commands();
  EXPECT_EQ(std::ranges::count(commands, std::string("- USER admin 331")), 1);
  EXPECT_THAT(commands, Contains("part3 RETR allstats.csv 226"));
  EXPECT_THAT(commands, Contains("part3 DELE linestat 250"));
  EXPECT_THAT(commands.back(), HasSubstr("QUIT"));
}

TEST_F(DeviceConnectionCurlTest, SaysWhatTheDeviceSaidOrWhyItCouldNot) {
  struct Row {
    const char* fault;
    const char* description;  // its beginning
    const char* detail;
  };
  const Row rows[] = {
      {"login:530", "530 ", "Login as admin at 127.0.0.1 port "},
      {"login:drop", "The device closed the connection", "Login as admin"},
      {"login:mute", "No byte came or went for 600 ms", "Login as admin"},
      {"connect:421", "421 ", "Login as admin"},
      {"connect:mute", "No byte came or went for 600 ms", "Login as admin"},
      {"ACCT:421", "421 ", "Selecting part3"},
      {"ACCT:501", "501 ", "Selecting part3"},
      {"ACCT:drop", "The device closed the connection", "Selecting part3"},
      {"RETR:550", "550 ", "Fetching allstats.csv"},
      {"RETR:drop", "The device closed the connection", "Fetching allstats.csv"},
      {"RETR:drop=100", "The transfer was cut short", "Fetching allstats.csv, after 100 bytes"},
      {"RETR:truncate=100", "The transfer was cut short", "Fetching allstats.csv, after 100 bytes"},
      {"RETR:452=100", "The transfer was cut short", "Fetching allstats.csv"},
      {"RETR:stall", "No byte came or went for 600 ms", "Fetching allstats.csv"},
      {"RETR:stall=100", "No byte came or went for 600 ms", "Fetching allstats.csv"},
      {"STOR:452=5", "452 ", "Sending dbase"},
      {"STOR:drop=5", "The device closed the connection", "Sending dbase"},
      {"STOR:mute", "No byte came or went for 600 ms", "Sending dbase"},
      {"DELE:450", "450 ", "Deleting linestat"},
      {"DELE:mute", "No byte came or went for 600 ms", "Deleting linestat"},
  };
  write("out", "twelve bytes");
  for (const Row& row : rows) {
    SCOPED_TRACE(row.fault);
    const SimulatedDevice device({row.fault});
    write("stats.csv", "what was there");
    const auto began = std::chrono::steady_clock::now();
    const base::Fault fault = caught([&] {
      const auto connection = connect(device);
      connection->account("part3");
      connection->get("allstats.csv", local("stats.csv"));
      write("stats.csv", "what was there");
      connection->put(local("out"), "dbase");
      connection->remove("linestat");
    });
    EXPECT_THAT(fault.description(), testing::StartsWith(row.description));
    EXPECT_THAT(fault.detail(), testing::StartsWith(row.detail));
    EXPECT_THAT(fault.description() + fault.detail(), Not(HasSubstr(SimulatedDevice::kPassword)));
    EXPECT_EQ(content("stats.csv"), "what was there");
    EXPECT_FALSE(std::filesystem::exists(native("stats.csv.part")));
    EXPECT_LT(std::chrono::steady_clock::now() - began, 2s) << "its end waits for nobody";
  }
}

TEST_F(DeviceConnectionCurlTest, NeverLogsInAgain) {
  const SimulatedDevice device({"DELE:drop"});
  const auto connection = connect(device);
  connection->account("part3");
  fault_of([&] { connection->remove("linestat"); });
  EXPECT_FALSE(connection->alive());
  write("out", "for partition 3");
  EXPECT_EQ(fault_of([&] { connection->put(local("out"), "dbase"); }), "The device closed the connection");
  EXPECT_EQ(std::ranges::count(device.commands(), std::string("- USER admin 331")), 1);
}

TEST_F(DeviceConnectionCurlTest, ARefusalIsNoEndAndEverythingElseIs) {
  const struct {
    const char* fault;
    bool alive;
  } rows[] = {{"ACCT#2:501", true},       {"RETR#1:550", true},    {"DELE#1:450", true},
              {"STOR#1:452=5", true},     {"ACCT#2:421", false},   {"ACCT#2:drop", false},
              {"RETR#1:drop=100", false}, {"RETR#1:stall", false}, {"RETR#1:truncate=100", false},
              {"STOR#1:drop=5", false},   {"DELE#1:mute", false},  {"NOOP#1:drop", true}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fault);
    const SimulatedDevice device({row.fault});
    const auto connection = connect(device);
    write("out", "for partition 3");
    connection->account("part3");
    EXPECT_TRUE(connection->alive());
    for (const auto& step : std::vector<std::function<void()>>{
             [&] { connection->account("part4"); }, [&] { connection->get("linestat", local("in")); },
             [&] { connection->account("part3"); }, [&] { connection->put(local("out"), "dbase"); },
             [&] { connection->remove("linestat"); }}) {
      if (!fault_of(step).empty()) break;
    }
    EXPECT_EQ(connection->alive(), row.alive);
    if (!row.alive) continue;
    connection->account("part7");
    connection->put(local("out"), "after");
    EXPECT_THAT(device.commands(), Contains("part7 STOR after 226"));
    EXPECT_EQ(std::ranges::count(device.commands(), std::string("- USER admin 331")), 1);
  }
}

TEST_F(DeviceConnectionCurlTest, KeepsItsLimits) {
  const SimulatedDevice device;
  auto limits = short_limits();
  limits.largest_file = 50;
  const auto connection = connect(device, limits);
  connection->account("part3");
  write("out", std::string(51, 'x'));
  EXPECT_EQ(fault_of([&] { connection->put(local("out"), "dbase"); }), "The file is larger than 50 bytes");
  EXPECT_EQ(fault_of([&] { connection->get("allstats.csv", local("in")); }),
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
  connection->get("log", local("link"));
  EXPECT_EQ(content("outside"), "secret");
  EXPECT_FALSE(std::filesystem::is_symlink(native("link")));
  EXPECT_EQ(fault_of([&] { connection->get("log", local("missing") + "\\x"); }), "File not found");
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
  const base::Fault fault = caught([&] { connection->get("allstats.csv", local("stats.csv")); });
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(fault.description(), "File too large");
  EXPECT_THAT(fault.detail(), testing::StartsWith("Fetching allstats.csv. Writing "));
  EXPECT_TRUE(std::filesystem::is_empty(folder_.path().toStdString()));
}

TEST_F(DeviceConnectionCurlTest, IsCancelledAtOnce) {
  const SimulatedDevice device({"RETR:stall=100"});
  auto limits = short_limits();
  limits.idle = 20s;
  const auto connection = connect(device, limits);
  connection->account("part3");
  std::chrono::steady_clock::time_point cancelled;
  std::thread other([&] {
    std::this_thread::sleep_for(100ms);
    cancelled = std::chrono::steady_clock::now();
    connection->cancel();
  });
  EXPECT_THROW(connection->get("allstats.csv", local("stats.csv")), platform::SessionCancelled);
  other.join();
  EXPECT_LT(std::chrono::steady_clock::now() - cancelled, 100ms);
  EXPECT_THROW(connection->remove("linestat"), platform::SessionCancelled);
}

}  // namespace
}  // namespace qvrcom::adapters
