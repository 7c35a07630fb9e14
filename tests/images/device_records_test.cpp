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
  } rows[] = {{0, {"0", "0"}},          {3'999, {"0", "0"}},
              {4'000, {"0", "0"}},      {12'000, {"2", "0"}},
              {20'000, {"2", "0"}},     {479'999, {"0", "1"}},
              {-12'000, {"-2", "0"}},   {-488'000, {"-1", "-1"}},
              {4'800'000, {"0", "10"}}, {2'147'483'647, {"55", "4473"}}};
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
      {"largest", {"\x7F\xFF\xFF\xFF\0\0\0\0", 8}, {"55", "4473"}, {"0", "0"}, false, false},
      {"first too large", {"\x80\0\0\0\0\0\xFA\0", 8}, old, old, true, false},
      {"second too large", {"\0\0\xFA\0\xFF\xFF\xFF\xFF", 8}, {"8", "0"}, old, true, false},
      {"cut in the second", {"\0\0\xFA\0\0\1\xF4", 7}, {"8", "0"}, {"16", "0"}, false, true},
      {"cut and too large", {"\0\0\xFA\0\x80", 5}, {"8", "0"}, old, true, true},
      {"empty", "", {"0", "0"}, {"0", "0"}, false, true},
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

TEST(DeviceRecords, HandsOutRecordsAsStored) {
  std::string bytes;
  for (int i = 0; i < 80; ++i)
    bytes.push_back(static_cast<char>(0xF8 + i));
  Parts parts;
  parts.files.content["S:\\x"] = bytes;
  const ClockRecord clock = parts.records.Struct_Time("S:\\x");
  EXPECT_THAT(clock, ElementsAre(0xFBFAF9F8U, 0xFFFEFDFCU));
  EXPECT_EQ(clock_bytes(clock), bytes.substr(0, 8));
  EXPECT_EQ(firmware_bytes(parts.records.Struct_Firmware("S:\\x")), bytes.substr(0, 72));
  EXPECT_EQ(parts.received.Shortfall, "");

  parts.files.content["S:\\x"] = "\1\2\3\4\5";
  EXPECT_THAT(parts.records.Struct_Time("S:\\x"), ElementsAre(0x04030201U, 5U));
  EXPECT_THAT(parts.received.Shortfall, HasSubstr("5 of 8 bytes"));
  EXPECT_EQ(firmware_bytes(parts.records.Struct_Firmware("S:\\x")), "\1\2\3\4\5" + std::string(67, '\0'));
  EXPECT_THAT(parts.received.Shortfall, HasSubstr("5 of 72 bytes"));
  EXPECT_THAT(parts.ui.messages, IsEmpty());
}

TEST(DeviceRecords, ReportsMissingFiles) {
  Parts parts;
  EXPECT_EQ(parts.records.Struct_Time("S:\\x"), ClockRecord{});
  EXPECT_EQ(parts.records.Struct_Firmware("S:\\x"), FirmwareRecord{});
  parts.records.PARTITION_INFO("S:\\x");
  EXPECT_THAT(parts.ui.texts(), ElementsAre("Error_Handler: Struct_Time\r\nFile not found",
                                            "Error_Handler: Struct_Firmware\r\nFile not found",
                                            "Error_Handler: PARTITION_INFO\r\nFile not found"));
  EXPECT_EQ(parts.received.PartitionTimes[0], TimeRecord{});
}

}  // namespace
}  // namespace qvrcom::images
