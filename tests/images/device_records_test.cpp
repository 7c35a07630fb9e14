#include "images/device_records.h"

#include <gmock/gmock.h>

#include "doubles/memory_files.h"
#include "doubles/message_printer.h"
#include "doubles/recording_user_interface.h"

namespace qvrcom::images {
namespace {

using base::TimeRecord;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct Parts {
  doubles::MemoryFiles files;
  doubles::RecordingUserInterface ui;
  base::ReceivedValues received;
  DeviceRecords records{received, files, ui};
};

TEST(DeviceRecords, ConvertsSamplesToMinutesAndSeconds) {
  const struct {
    std::int32_t samples;
    TimeRecord time;
  } rows[] = {{4'000, {"0", "0"}},      {12'000, {"2", "0"}},     {479'999, {"0", "1"}},
              {-488'000, {"-1", "-1"}}, {4'800'000, {"0", "10"}}, {2'147'483'647, {"55", "4473"}}};
  for (const auto& row : rows)
    EXPECT_EQ(DeviceRecords::TIME_CONVERSIONS(row.samples), row.time) << row.samples;
}

TEST(DeviceRecords, ReadsTheTimesOfAPartition) {
  const TimeRecord old{"old", "old"};
  const struct {
    const char* what;
    std::string bytes;
    TimeRecord first, second;
    bool overflows, is_short;
  } rows[] = {
      {"both", {"\0\0\xFA\0\0\1\xF4\0\xFF\xFF", 10}, {"8", "0"}, {"16", "0"}, false, false},
      {"second too large", {"\0\0\xFA\0\xFF\xFF\xFF\xFF", 8}, {"8", "0"}, old, true, false},
      {"cut in the second", {"\0\0\xFA\0\0\1\xF4", 7}, {"8", "0"}, {"16", "0"}, false, true},
      {"cut and too large", {"\0\0\xFA\0\x80", 5}, {"8", "0"}, old, true, true},
  };
  for (const auto& row : rows) {
    Parts parts;
    parts.received.PartitionTimes = {old, old};
    parts.received.Shortfall = "of the file before";
    parts.files.content["S:\\msgindex"] = row.bytes;
    parts.records.PARTITION_INFO("S:\\msgindex");
    EXPECT_THAT(parts.received.PartitionTimes, ElementsAre(row.first, row.second)) << row.what;
    const std::string length = "S:\\msgindex holds " + std::to_string(row.bytes.size()) + " of 8 bytes";
    EXPECT_EQ(parts.received.Shortfall.starts_with(length), row.is_short) << row.what;
    EXPECT_EQ(parts.received.Shortfall.empty(), !row.is_short) << row.what;
    ASSERT_EQ(parts.ui.messages.size(), row.overflows ? 1U : 0U) << row.what;
    if (!row.overflows) continue;
    EXPECT_EQ(parts.ui.messages[0], (platform::Message{"Error_Handler: PARTITION_INFO\r\nOverflow", "QVRCOM+",
                                                       platform::Icon::kError}));
    EXPECT_THAT(parts.ui.messages[0].detail, HasSubstr(row.is_short ? length : "S:\\msgindex"));
  }
}

}  // namespace
}  // namespace qvrcom::images
