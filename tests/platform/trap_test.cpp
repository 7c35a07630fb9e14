#include "platform/trap.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "doubles/recording_user_interface.h"

namespace qvrcom::platform {
namespace {

TEST(Trap, ReportsInTheFormOfItsGroupAndGivesTheEmptyResult) {
  const struct {
    TrapForm form;
    const char *text, *title, *detail;
    Icon icon;
  } cases[] = {
      {kRulesTrap, "Error_Handler: Do_It\r\nFile not found", "QVRCOM+", "a.sch is gone", Icon::kNone},
      {kImagesTrap, "Error_Handler: Do_It\r\nFile not found", "QVRCOM+", "a.sch is gone", Icon::kError},
      {kControlTrap, "Do_It", "", "File not found: a.sch is gone", Icon::kNone},
  };
  for (const auto& c : cases) {
    doubles::RecordingUserInterface ui;
    const Trap trap(ui, c.form);
    const std::string result =
        trap("Do_It", [&]() -> std::string { throw base::Fault("File not found", "a.sch is gone"); });
    EXPECT_EQ(result, "");
    ASSERT_EQ(ui.messages.size(), 1U);
    EXPECT_EQ(ui.messages[0].text, c.text);
    EXPECT_EQ(ui.messages[0].title, c.title);
    EXPECT_EQ(ui.messages[0].detail, c.detail);
    EXPECT_EQ(ui.messages[0].icon, c.icon);
  }
}

TEST(Trap, CatchesWhatTheLanguageThrowsToo) {
  doubles::RecordingUserInterface ui;
  const Trap trap(ui);
  trap("Do_It", [] { throw std::length_error("too long"); });
  EXPECT_EQ(trap("Fine", [] { return 7; }), 7);
  EXPECT_EQ(ui.texts(), std::vector<std::string>{"Error_Handler: Do_It\r\ntoo long"});
}

}  // namespace
}  // namespace qvrcom::platform
