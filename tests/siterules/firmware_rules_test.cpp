#include "siterules/firmware_rules.h"

#include <gmock/gmock.h>

#include "doubles/recording_user_interface.h"

namespace qvrcom::siterules {
namespace {

struct FirmwareRulesTest : testing::Test {
  doubles::RecordingUserInterface ui;
  FirmwareRules rules{platform::Trap(ui)};
};

TEST_F(FirmwareRulesTest, JudgesCompatibilityByMachineType) {
  struct Case {
    const char* version;
    const char* machine_type;
    const char* verdict;
  };
  const Case cases[] = {
      {"6.60", "2", kCompatible},
      {"6.69", "2", kCompatible},
      {"6.70", "2", kNotCompatible},
      {"6.79", "2", kNotCompatible},
      {"6.80", "2", kCompatible},
      {"6.89", "2", kCompatible},
      {"6.90", "2", kNotCompatible},
      {"6.59", "2", kBackwardCompatible},
      {"6.00", "2", kBackwardCompatible},
      {"5.02", "2", kBackwardCompatible},
      {"5.03", "2", kNotCompatible},
      {"5.10", "2", kBackwardCompatible},
      {"5.29", "2", kBackwardCompatible},
      {"5.30", "2", kNotCompatible},
      {"6.ac", "2", kBackwardCompatible},
      {"6.AC", "2", kNotCompatible},
      {"05.C0", "2", kBackwardCompatible},
      {"5.cb", "2", kNotCompatible},
      {"6.6", "2", kNotCompatible},
      {" 6.60", "2", kNotCompatible},
      {"6.600", "2", kNotCompatible},
      {"", "2", kNoFirmwareVersion},
      {"0", "2", kNoFirmwareVersion},
      {"1.30", "3", kCompatible},
      {"1.39", "3", kCompatible},
      {"1.29", "3", kBackwardCompatible},
      {"1.00", "3", kBackwardCompatible},
      {"1.40", "3", kNotCompatible},
      {"6.61", "3", kNotCompatible},
      {"0", "3", kNoFirmwareVersion},
      {"6.61", "4", ""},
      {"", "4", ""},
  };
  for (const Case& one : cases)
    EXPECT_EQ(rules.Version_Compactibility(one.version, one.machine_type), one.verdict)
        << one.version << " on " << one.machine_type;
  EXPECT_TRUE(ui.messages.empty());
}

TEST_F(FirmwareRulesTest, ReportsAMachineTypeThatIsNoNumber) {
  EXPECT_EQ(rules.Version_Compactibility("6.61", "two"), "");
  EXPECT_THAT(ui.texts(), testing::ElementsAre("Error_Handler: Version_Compactibility\r\nType mismatch"));
}

TEST_F(FirmwareRulesTest, TellsTheStatisticsGenerations) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "NO_FIRMWARE_VERSION"}, {"0", "NO_FIRMWARE_VERSION"}, {"5.00", "OldStats"}, {"05.C0", "OldStats"},
      {"5.CB", "OldStats"},        {"5.cb", "NewStats"},         {"5.02", "NewStats"}, {"5.CC", "NewStats"},
      {"6.61", "NewStats"},        {"anything", "NewStats"},
  };
  for (const auto& [version, generation] : cases)
    EXPECT_EQ(rules.Check_Firmware_Version(version), generation) << version;
}

}  // namespace
}  // namespace qvrcom::siterules
