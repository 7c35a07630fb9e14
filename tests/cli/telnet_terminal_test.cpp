#include "cli/telnet_terminal.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include "adapters/qt_application.h"
#include "cli/command_run.h"
#include "requests/session_progress.h"

namespace qvrcom::cli {
namespace {

using adapters::pump_until;
using testing::EndsWith;
using testing::HasSubstr;

struct TelnetTerminalTest : testing::Test {
  TelnetTerminalTest() { EXPECT_EQ(pipe(ends), 0); }
  ~TelnetTerminalTest() override {
    close(ends[0]);
    close(ends[1]);
  }
  void type(std::string_view text) {
    EXPECT_EQ(write(ends[1], text.data(), text.size()), ssize_t(text.size()));
  }
  CommandRun run;  // brings the event loop
  std::ostringstream out, err;
  Console console{out, err, false};
  FakeTerminal device;
  int ends[2];
};

TEST_F(TelnetTerminalTest, BytesPassBothWaysUntilTheDeviceEndsIt) {
  TelnetTerminal terminal(console, device, ends[0]);
  terminal.attach("J");
  type("a\x1d\xff");  // Ctrl-] is a byte like any other on a pipe
  EXPECT_TRUE(pump_until([this] { return device.sent == "a\x1d\xff"; }));
  device.events.output("\x1b[1m>");
  EXPECT_EQ(out.str(), "\x1b[1m>");
  device.events.ended("The device hung up.");
  EXPECT_THAT(err.str(), EndsWith("The device hung up.\n"));
  type("nobody hears");
  EXPECT_FALSE(pump_until([this] { return device.sent.ends_with("s"); }, 50));
}

TEST_F(TelnetTerminalTest, NoMoreIsReadThanTheDeviceTakes) {
  TelnetTerminal terminal(console, device, ends[0]);
  terminal.attach("J");
  device.waiting = 1U << 20U;
  type("one");
  EXPECT_TRUE(pump_until([this] { return device.sent == "one"; }));
  type("two");
  EXPECT_FALSE(pump_until([this] { return device.sent != "one"; }, 150));
  device.waiting = 0;
  EXPECT_TRUE(pump_until([this] { return device.sent == "onetwo"; }));
  device.waiting = 4;
  device.events.ended("No byte came or went for 60 s.");
  EXPECT_THAT(err.str(), HasSubstr("No byte came or went for 60 s.\n"));
  EXPECT_THAT(err.str(), HasSubstr("2 of 6 bytes typed went to the device, 4 did not."));
}

TEST_F(TelnetTerminalTest, TheEndOfTheInputWaitsForASilentDevice) {
  TelnetTerminal terminal(console, device, ends[0]);
  terminal.attach("J");
  close(std::exchange(ends[1], -1));
  for (int i = 0; i < 2; ++i) {
    EXPECT_FALSE(pump_until([this] { return device.left; }, 1200));
    device.events.output("still here");
  }
  EXPECT_TRUE(pump_until([this] { return device.left; }));
}

TEST(TransferText, SpeaksOfTheJobAtHandAlone) {
  protocol::SchedulerStatus status;
  status.running_job = "J";
  status.step = "Storing firmware";
  status.bytes_done = 512;
  const auto line = [&](const char* job) {
    return requests::progress_line(requests::progress_of(status, job));
  };
  EXPECT_EQ(line("J"), "Storing firmware, 512 bytes");
  status.bytes_hinted = 2048;
  EXPECT_EQ(line("J"), "Storing firmware, 512 of about 2048 bytes");
  status.bytes_hinted = 1;
  EXPECT_EQ(line("J"), "Storing firmware, 512 bytes");
  EXPECT_EQ(line("other"), "");
  status.jobs = {{"done", "", protocol::JobState::kFinished}, {"other", "", protocol::JobState::kWaiting}};
  EXPECT_EQ(line("other"), "waits for J, Storing firmware, 512 bytes");
  EXPECT_EQ(line("done"), "");
}

}  // namespace
}  // namespace qvrcom::cli
