#include "cli/telnet_terminal.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include "cli/command_run.h"
#include "requests/session_progress.h"

namespace qvrcom::cli {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

struct TelnetTerminalTest : testing::Test {
  TelnetTerminalTest() { EXPECT_EQ(pipe(ends), 0); }
  ~TelnetTerminalTest() override {
    close(ends[0]);
    hang_up();
  }
  void type(std::string_view text) {
    EXPECT_EQ(write(ends[1], text.data(), text.size()), ssize_t(text.size()));
  }
  void hang_up() {
    if (ends[1] >= 0) close(std::exchange(ends[1], -1));
  }
  static void pump(int milliseconds) {
    QTimer::singleShot(milliseconds, [] {});
    for (const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
         std::chrono::steady_clock::now() < end;)
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, milliseconds);
  }

  CommandRun run;  // brings the event loop
  std::ostringstream out, err;
  Console console{out, err, false};
  FakeTerminal device;
  int ends[2] = {-1, -1};
};

TEST_F(TelnetTerminalTest, BytesPassBothWaysUntilTheDeviceEndsIt) {
  TelnetTerminal terminal(console, device, ends[0]);
  terminal.attach("J");
  type("a\x1d\xff");  // Ctrl-] is a byte like any other on a pipe
  pump(50);
  EXPECT_EQ(device.sent, "a\x1d\xff");
  device.events.output("\x1b[1m>");
  EXPECT_EQ(out.str(), "\x1b[1m>");
  device.events.ended("The device hung up.");
  EXPECT_THAT(err.str(), EndsWith("The device hung up.\n"));
  type("nobody hears");
  pump(50);
  EXPECT_EQ(device.sent, "a\x1d\xff");
}

TEST_F(TelnetTerminalTest, NoMoreIsReadThanTheDeviceTakes) {
  TelnetTerminal terminal(console, device, ends[0]);
  terminal.attach("J");
  device.waiting = 1U << 20U;
  type("one");
  pump(50);
  type("two");
  pump(150);
  EXPECT_EQ(device.sent, "one");
  device.waiting = 0;
  pump(250);
  EXPECT_EQ(device.sent, "onetwo");
  device.waiting = 4;
  device.events.ended("No byte came or went for 60 s.");
  EXPECT_THAT(err.str(), HasSubstr("No byte came or went for 60 s.\n"));
  EXPECT_THAT(err.str(), HasSubstr("2 of 6 bytes typed went to the device, 4 did not."));
}

TEST_F(TelnetTerminalTest, TheEndOfTheInputWaitsForASilentDevice) {
  TelnetTerminal terminal(console, device, ends[0]);
  terminal.attach("J");
  hang_up();
  pump(1200);
  device.events.output("still here");
  pump(1200);
  EXPECT_FALSE(device.left);
  pump(1500);
  EXPECT_TRUE(device.left);
}

TEST(TransferText, SpeaksOfTheJobAtHandAlone) {
  protocol::SchedulerStatus status;
  status.running_job = "J";
  status.step = "Storing firmware";
  status.bytes_done = 512;
  EXPECT_EQ(requests::progress_line(requests::progress_of(status, "J")), "Storing firmware, 512 bytes");
  status.bytes_hinted = 2048;
  EXPECT_EQ(requests::progress_line(requests::progress_of(status, "J")),
            "Storing firmware, 512 of about 2048 bytes");
  status.bytes_hinted = 1;
  EXPECT_EQ(requests::progress_line(requests::progress_of(status, "J")), "Storing firmware, 512 bytes");
  EXPECT_EQ(requests::progress_line(requests::progress_of(status, "other")), "");
  status.jobs = {{"done", "", protocol::JobState::kFinished}, {"other", "", protocol::JobState::kWaiting}};
  EXPECT_EQ(requests::progress_line(requests::progress_of(status, "other")),
            "waits for J, Storing firmware, 512 bytes");
  EXPECT_EQ(requests::progress_line(requests::progress_of(status, "done")), "");
  EXPECT_EQ(requests::progress_line(requests::progress_of({}, "J")), "");
}

}  // namespace
}  // namespace qvrcom::cli
