#include "cli/console.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <sstream>

#include "cli/console_user_interface.h"
#include "cli/partition_list.h"
#include "cli/printable.h"

namespace qvrcom::cli {
namespace {

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

}  // namespace
}  // namespace qvrcom::cli
