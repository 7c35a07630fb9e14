#include <gmock/gmock.h>

#include <array>
#include <fstream>
#include <iterator>

#include "devicefiles/configuration_image.h"
#include "devicefiles/device_time.h"
#include "devicefiles/node_statistics.h"
#include "devicefiles/sections.h"
#include "devicefiles/system_information.h"
#include "doubles/caught.h"

namespace qvrcom::devicefiles {
namespace {

using base::local_time;
using namespace std::string_view_literals;

// fuzz/samples holds what the simulated device serves, "whole", and the same bytes damaged.
std::string sample(const std::string& name) {
  std::ifstream file(std::string(QVRCOM_SAMPLES) + "/" + name, std::ios::binary);
  if (!file) throw std::runtime_error("no sample " + name);
  return {std::istreambuf_iterator<char>(file), {}};
}

using doubles::whole_fault_of;

std::string reading(const std::string& form, const std::string& bytes) {
  return whole_fault_of([&] {
    if (form == "device_time") read_device_time(bytes);
    if (form == "system_information") read_system_information(bytes);
    if (form == "system_image") read_system_image(bytes);
    if (form == "partition_image") read_partition_image(bytes);
    if (form == "line_statistics") read_line_statistics(bytes);
    if (form == "node_statistics") read_node_statistics(bytes);
  });
}

TEST(DeviceFiles, ReadWhatTheSimulatedDeviceServes) {
  EXPECT_EQ(read_device_time(sample("device_time/whole")).moment, local_time(2026, 11, 16, 12, 10, 5));

  const SystemInformation system = read_system_information(sample("system_information/whole"));
  EXPECT_EQ(system.firmware + "|" + system.serial_number + "|" + system.model, "5.01|SIM-00000007|Simulated");
  EXPECT_EQ(system.machine_type, 2U);
  EXPECT_EQ(system.lines, 24U);
  EXPECT_EQ(system.partitions, 4U);
  EXPECT_EQ(system.memory, 19200000U);
  EXPECT_EQ(system.moment, local_time(2026, 11, 16, 12, 10, 5));

  const SystemImage image = read_system_image(sample("system_image/whole"));
  EXPECT_EQ(image.settings.switch_type, 2U);
  EXPECT_TRUE(image.settings.front_panel_access);
  EXPECT_THAT(image.partitions,
              testing::ElementsAre(PartitionName{1, "Billing 1"}, PartitionName{2, "Service 2"},
                                   PartitionName{3, "Weather line 3"}, PartitionName{64, "Events 64"}));
  ASSERT_EQ(image.lines.size(), 24U);
  EXPECT_EQ(image.lines.back(), (UsedLine{3, 1, 4, 0}));

  const PartitionImage partition = read_partition_image(sample("partition_image/whole"));
  EXPECT_EQ(partition.partition, 3U);
  EXPECT_EQ(partition.settings.start, (NodeName{1, 1}));
  ASSERT_EQ(partition.nodes.size(), 11U);
  EXPECT_EQ(partition.nodes[2], (PartitionNode{{1, 3}, "The \"Night\" greeting"}));
}

TEST(DeviceFiles, ReadTheStatisticsThatTheSimulatedDeviceServes) {
  const LineStatistics lines = read_line_statistics(sample("line_statistics/whole"));
  EXPECT_EQ(lines.partition, 3U);
  EXPECT_EQ(lines.counted.until, local_time(2026, 11, 16, 12, 10, 5));
  EXPECT_LT(lines.counted.since, lines.counted.until);
  ASSERT_EQ(lines.calls.size(), 4U);
  EXPECT_EQ(lines.calls[0].calls, lines.calls[0].answered + lines.calls[0].busy + lines.calls[0].no_answer);

  const NodeStatistics nodes = read_node_statistics(sample("node_statistics/whole"));
  EXPECT_EQ(nodes.partition, 3U);
  EXPECT_EQ(nodes.accesses[0], (NodeAccess{{1, 1}, 303, "Welcome"}));
  EXPECT_EQ(nodes.selections[1], (NodeSelections{{kVoxNode, 1}, 36, 18, 2, 3}));
  EXPECT_EQ(nodes.counts[9], (SelectionCount{{kAutoNode, 1}, "300-399", 28}));
  EXPECT_EQ(nodes.details[0], (SelectionDetail{{kDtmfNode, 1}, "1", {1, 2}, 46, 9}));
  EXPECT_EQ(nodes.details[9].leads_to, NodeName{});
}

TEST(DeviceFiles, DamageIsRefusedWithItsReason) {
  const std::string lines = "The line statistics file is damaged: ";
  const std::string nodes = "The node statistics file is damaged: ";
  const std::string image = "The configuration image file is damaged: ";
  const std::string system = "The system information file is damaged: ";
  const std::pair<const char*, std::string> cases[] = {
      {"line_statistics/unknown_section", ""},
      {"line_statistics/empty", "Not a line statistics file of this suite: Its first bytes are not \"QVLS\""},
      {"device_time/other_magic", "Not a clock file of this suite"},
      {"line_statistics/newer_version",
       "The line statistics file is of another version: It has version 2, this program reads 1"},
      {"device_time/cut", "The clock file is damaged: It has 5 bytes, not 8"},
      {"device_time/checksum_wrong", "The clock file is damaged: Its checksum is wrong"},
      {"system_information/checksum_wrong", system + "Its checksum is wrong"},
      {"system_information/machine_type_out_of_range",
       system + "The field \"machine type\" is 7, not 2 to 3"},
      {"system_information/firmware_not_a_text", system + "The field \"firmware\" is not a text"},
      {"system_information/more_memory_in_use", system + "The field \"message memory in use\" is 4294967295"},
      {"line_statistics/length_lies", lines + "It has 204 bytes, not 205"},
      {"line_statistics/checksum_wrong", lines + "Its checksum is wrong"},
      {"line_statistics/count_overflow", lines + "It ends in the field \"records of section 1\""},
      {"line_statistics/record_length_zero", lines + "The field \"record length\" is 0, not 1 to 65535"},
      {"line_statistics/records_too_short", lines},
      {"line_statistics/section_cut", lines + "It ends in the field \"records of section 4\", 4 bytes"},
      {"line_statistics/section_twice", lines + "Section 1 stands in it twice"},
      {"line_statistics/header_alone", lines + "It does not have exactly one record of \"counted time\""},
      {"line_statistics/partition_zero", lines + "It names no partition"},
      {"line_statistics/line_zero", lines + "The field \"line\" is 0, not 1 to 999"},
      {"line_statistics/line_twice", lines + "One of its lines stands in it twice"},
      {"node_statistics/type_unknown", nodes + "The field \"node type\" is 17, not 1 to 16"},
      {"node_statistics/node_twice", nodes + "One of its nodes stands in it twice"},
      {"node_statistics/description_not_utf8", nodes + "The field \"description\" is not a text"},
      {"system_image/partition_image", "Not a system image: The file holds no image of the whole device"},
      {"partition_image/system_image", "Not a partition image: The file holds no image of a partition"},
      {"system_image/machine_type_out_of_range", image + "The field \"machine type\" is 1, not 2 to 3"},
      {"system_image/partition_twice", image + "One of its partitions stands in it twice"},
      {"partition_image/node_zero", image + "The field \"node number\" is 0, not 1 to 32767"},
      {"partition_image/flag_is_two", image + "The field \"enabled\" is 2, not 0 to 1"},
      {"partition_image/text_behind_its_end", image + "The field \"description\" is not a text"},
  };
  for (const auto& [name, expected] : cases) {
    const std::string form(name, std::string(name).find('/'));
    const std::string found = reading(form, sample(name));
    EXPECT_TRUE(expected.empty() ? found.empty() : found.starts_with(expected)) << name << ": " << found;
  }
  EXPECT_THAT(reading("node_statistics", "QVNS\1" + std::string(kLargestFile, 'x')),
              testing::HasSubstr("more than 1048576"));
}

TEST(DeviceFiles, LongerRecordsOfLaterProgramsAreRead) {
  LineStatistics wanted;
  wanted.calls.push_back({7, 1, 1, 0, 0, 30, 30});
  SectionWriter file({"QVLS", "line statistics"}, {0, 1});
  file.section(1, 9, std::array{0}, [](ByteWriter& record, int) { record.bytes("\0\0\0\0\0\0\0\0?"sv); });
  file.section(2, 28, wanted.calls, [](ByteWriter& record, const LineCalls& one) {
    record.u16("line", one.line);
    for (const std::uint32_t value : {1U, 1U, 0U, 0U, 30U, 30U})
      record.u32(value);
    record.bytes("??");
  });
  const LineStatistics read = read_line_statistics(file.finish());
  EXPECT_EQ(read.calls, wanted.calls);
  EXPECT_EQ(read.counted.since, local_time(2000, 1, 1));
}

TEST(DeviceFiles, WritersRefuseWhatDoesNotFit) {
  EXPECT_THAT(whole_fault_of([] { write_device_time({local_time(1999, 12, 31)}); }),
              testing::StartsWith("Overflow"));
  EXPECT_EQ(read_device_time(write_device_time({local_time(2136, 2, 7, 6, 28, 15)})).moment,
            local_time(2136, 2, 7, 6, 28, 15));
  EXPECT_THAT(whole_fault_of([] {
                write_partition_image({1, {}, {{{1, 70000}, ""}}});
              }),
              testing::HasSubstr("node number"));
}

}  // namespace
}  // namespace qvrcom::devicefiles
