#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <sstream>

#include "adapters/qt_application.h"
#include "cli/command_run.h"
#include "cli/console.h"
#include "cli/console_user_interface.h"
#include "cli/partition_list.h"
#include "cli/printable.h"
#include "cli/telnet_terminal.h"
#include "requests/session_progress.h"

namespace qvrcom::cli {
namespace {

using adapters::pump_until;
using testing::EndsWith;
using testing::HasSubstr;

TEST(Printable, LetsNoControlThrough) {
  const struct {
    const char* text;
    const char* shown;
  } cases[] = {
      {"a\tb\nc\x7f", "a\\x09b\\x0Ac\\x7F"},
      {"\xC2\x9B"
       "31m",
       "\\xC2\\x9B31m"},
      {"\xC2\xA0", "\xC2\xA0"},
      {"\xFF\xC3", "\\xFF\\xC3"},
      {"\xED\xA0\x80", "\\xED\\xA0\\x80"},
  };
  for (const auto& each : cases)
    EXPECT_EQ(printable(each.text), each.shown);
  EXPECT_EQ(printable(std::string_view("\0", 1)), "\\x00");
  EXPECT_EQ(width_of("Zü€"), 3U);
  EXPECT_EQ(clipped("Zürich", 2), "Zü");
}

TEST(PartitionList, ReadsNumbersAndRanges) {
  const struct {
    const char* text;
    std::optional<std::vector<int>> partitions;
  } cases[] = {
      {"3", {{3}}},
      {"9,1-2, 64", {{9, 1, 2, 64}}},
      {"2,1-3", {{2, 1, 3}}},
      {"", {}},
      {"0", {}},
      {"65", {}},
      {"4-1", {}},
      {"1,", {}},
      {"+1", {}},
      {"1x", {}},
  };
  for (const auto& each : cases)
    EXPECT_EQ(parse_partitions(each.text), each.partitions) << each.text;
}

TEST(Console, TakesClosedDescriptorsSoThatNoFileGetsThem) {
  const auto closed_ones_are_taken = [] {
    close(STDIN_FILENO);
    close(STDOUT_FILENO);
    take_standard_descriptors();
    char byte = 0;
    const bool useless = read(STDIN_FILENO, &byte, 1) < 0 && write(STDOUT_FILENO, &byte, 1) < 0;
    _exit(useless && open("/dev/null", O_RDONLY) > STDERR_FILENO ? 0 : 1);
  };
  EXPECT_EXIT(closed_ones_are_taken(), testing::ExitedWithCode(0), "");
}

TEST(Console, ReportsBoxesAndRewritesOneStatusLineOnATerminal) {
  const auto shown = [](bool on_terminal) {
    std::ostringstream out, err;
    {
      Console console(out, err, on_terminal);
      console.set_status("Working\x1b");
      console.set_status("Done");
      console.set_status("Done");
      console.report({.text = "One\r\nTwo \x1b", .title = "T", .detail = "why\nwhat to do"});
      console.report({.text = "no title"});
    }
    EXPECT_EQ(out.str(), "");
    return err.str();
  };
  EXPECT_EQ(shown(false), "T: One\nTwo \\x1B\n  why\n  what to do\nqvrcomctl: no title\n");
  EXPECT_EQ(shown(true),
            "\rWorking\\x1B\rDone       \rDone\r    \rT: One\nTwo \\x1B\n  why\n  what to do\n"
            "\rDone\r    \rqvrcomctl: no title\n\rDone\r    \r");
}

TEST(ConsoleUserInterface, AnswersSafelyAndAsksWhereSomebodyIs) {
  using platform::Button;
  using platform::Buttons;
  const struct {
    Buttons buttons;
    std::optional<Button> given;
    std::optional<std::string> typed;
    Button answer;
  } cases[] = {
      {Buttons::kOk, Button::kNo, "c\n", Button::kOk},
      {Buttons::kOkCancel, {}, {}, Button::kCancel},
      {Buttons::kOkCancel, Button::kOk, {}, Button::kOk},
      {Buttons::kOkCancel, Button::kYes, {}, Button::kCancel},
      {Buttons::kOkCancel, {}, "y\n", Button::kCancel},
      {Buttons::kOkCancel, {}, "o\n", Button::kOk},
      {Buttons::kYesNoCancel, {}, {}, Button::kCancel},
      {Buttons::kYesNoCancel, Button::kNo, "y\n", Button::kNo},
      {Buttons::kYesNoCancel, {}, "what?\n Yes\n", Button::kYes},
  };
  for (const auto& each : cases) {
    std::ostringstream out, err;
    std::istringstream typed(each.typed.value_or(""));
    Console console(out, err, false);
    ConsoleUserInterface ui(console, each.given, each.typed ? &typed : nullptr);
    EXPECT_EQ(ui.show({.text = "Go on?", .buttons = each.buttons}), each.answer) << err.str();
  }
}

TEST(ConsoleUserInterface, PrintsABoxOnceARun) {
  std::ostringstream out, err;
  Console console(out, err, false);
  ConsoleUserInterface ui(console, {});
  for (int run = 0; run < 2; ++run) {
    ui.begin_run();
    for (int time = 0; time < 2; ++time)
      ui.show({.text = "Sure?", .title = "T"});
  }
  EXPECT_EQ(err.str(), "T: Sure?\nT: Sure?\n");
}

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
