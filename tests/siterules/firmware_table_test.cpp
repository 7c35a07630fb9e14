#include "siterules/firmware_table.h"

#include <gtest/gtest.h>

#include "base/fault.h"

namespace qvrcom::siterules {
namespace {

TEST(ImageGeneration, IsChosenByMachineTypeAndExactVersion) {
  const struct {
    const char *machine, *generation;
    std::initializer_list<const char*> versions;
  } rows[] = {
      {"2",
       "5_0",
       {"5.00", "5.01", "5.02", "5.bm", "5.bn", "5.bp", "05.C0", "5.ca", "5.CB", "5.CC", "5.cf", "5.cg"}},
      {"2", "5_1", {"5.10", "5.19"}},
      {"2", "5_2", {"5.20", "5.29"}},
      {"2", "6_0", {"6.00", "6.09", "6.ac"}},
      {"2", "6_1", {"6.10", "6.29"}},
      {"2", "6_3", {"6.30", "6.39"}},
      {"2", "7_0", {"6.40", "6.49"}},
      {"2", "7_1", {"6.50", "6.69"}},
      {"2", "7_2", {"6.70", "1.05", "5.03", "5.30", "5.cb", "05.c0", "6.1", "6.150", " 6.15", "", "7.00"}},
      {"3", "7_0", {"1.00", "1.09"}},
      {"3", "7_1", {"1.10", "1.29"}},
      {"3", "7_2", {"1.30", "5.00", "6.ac"}},
      {" 2 ", "6_3", {"6.35"}},
      {"4", "", {"6.35"}},
  };
  for (const auto& row : rows) {
    for (const char* version : row.versions)
      EXPECT_EQ(image_generation(row.machine, version), row.generation)
          << row.machine << " \"" << version << '"';
  }
  EXPECT_THROW(image_generation("", "6.35"), base::Fault);
}

TEST(FirmwareTable, NamesTheVersionsWithRtqaOptions) {
  for (const char* version : {"1.00", "1.29", "6.10", "6.69"})
    EXPECT_TRUE(firmware_of(version) && firmware_of(version)->has_rtqa_options) << version;
  for (const char* version : {"1.30", "6.09", "6.70", "6.80", "5.CC", ""})
    EXPECT_FALSE(firmware_of(version) && firmware_of(version)->has_rtqa_options) << version;
}

}  // namespace
}  // namespace qvrcom::siterules
