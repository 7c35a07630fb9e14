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
  const struct {
    const char *machine_type, *verdict;
    std::vector<const char*> versions;
  } rows[] = {
      {"2", kCompatible, {"6.60", "6.69", "6.80", "6.89"}},
      {"2",
       kBackwardCompatible,
       {"6.59", "6.00", "5.00", "5.02", "5.10", "5.29", "5.bm", "5.bn", "5.bp", "05.C0", "5.ca", "5.CB",
        "5.CC", "5.cf", "5.cg", "6.ac"}},
      {"2",
       kNotCompatible,
       {"6.70", "6.79", "6.90", "5.03", "5.30", "6.AC", "5.cb", "6.6", " 6.60", "6.600"}},
      {"2", kNoFirmwareVersion, {"", "0"}},
      {"3", kCompatible, {"1.30", "1.39"}},
      {"3", kBackwardCompatible, {"1.29", "1.00"}},
      {"3", kNotCompatible, {"1.40", "6.61"}},
      {"3", kNoFirmwareVersion, {"0"}},
      {"4", "", {"6.61", ""}},
  };
  for (const auto& row : rows) {
    for (const char* version : row.versions)
      EXPECT_EQ(rules.Version_Compactibility(version, row.machine_type), row.verdict)
          << version << " on " << row.machine_type;
  }
  EXPECT_TRUE(ui.messages.empty());
  EXPECT_EQ(rules.Version_Compactibility("6.61", "two"), "");
  EXPECT_THAT(ui.texts(), testing::ElementsAre("Error_Handler: Version_Compactibility\r\nType mismatch"));
}

TEST_F(FirmwareRulesTest, TellsTheStatisticsGenerations) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "NO_FIRMWARE_VERSION"}, {"0", "NO_FIRMWARE_VERSION"}, {"5.00", "OldStats"}, {"5.01", "OldStats"},
      {"5.bm", "OldStats"},        {"5.bn", "OldStats"},         {"5.bp", "OldStats"}, {"05.C0", "OldStats"},
      {"5.ca", "OldStats"},        {"5.CB", "OldStats"},         {"5.cb", "NewStats"}, {"5.02", "NewStats"},
  };
  for (const auto& [version, generation] : cases)
    EXPECT_EQ(rules.Check_Firmware_Version(version), generation) << version;
}

}  // namespace
}  // namespace qvrcom::siterules
