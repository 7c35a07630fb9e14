#include "devicefiles/configuration_image.h"

#include <array>
#include <tuple>

#include "base/fault.h"
#include "devicefiles/sections.h"

namespace qvrcom::devicefiles {
namespace {

constexpr FileForm kForm{"QVDB", "configuration image"};
constexpr std::uint32_t kSystemContent = 1, kPartitionContent = 2;
constexpr std::uint32_t kSettingsSection = 1;
constexpr std::uint32_t kPartitionsSection = 2, kLinesSection = 3;  // of a system image
constexpr std::uint32_t kNodesSection = 2;                          // of a partition image
constexpr std::size_t kSystemSettingsLength = 12, kPartitionSettingsLength = 12;
constexpr std::size_t kPartitionNameWidth = 32, kPartitionLength = 1 + kPartitionNameWidth;
constexpr std::size_t kLineLength = 4;
constexpr std::size_t kDescriptionWidth = 40, kNodeLength = kNodeNameLength + kDescriptionWidth;

void check_content(const SectionReader& file, std::uint32_t wanted) {
  if (file.header().content == wanted) return;
  const bool system = wanted == kSystemContent;
  throw base::Fault(system ? "Not a system image" : "Not a partition image",
                    std::string("The file holds ") +
                        (system ? "no image of the whole device." : "no image of a partition."));
}

SystemSettings read_system_settings(ByteReader& record) {
  SystemSettings result;
  result.machine_type = record.in_range("machine type", 1, 2, 3);
  result.highest_partition = record.in_range("highest partition", 1, 1, 64);
  result.card_variant = record.u8("card variant");
  result.impedance = record.u8("impedance");
  result.country_code = record.in_range("country code", 2, 0, 999);
  result.modem_country_code = record.in_range("modem country code", 2, 0, 999);
  result.remote_line = record.u8("embedded remote line");
  result.switch_type = record.u8("switch type");
  result.front_panel_access = record.flag("front panel access");
  result.modem_access = record.flag("modem access");
  return result;
}

void write_system_settings(ByteWriter& record, const SystemSettings& one) {
  record.u8("machine type", one.machine_type);
  record.u8("highest partition", one.highest_partition);
  record.u8("card variant", one.card_variant);
  record.u8("impedance", one.impedance);
  record.u16("country code", one.country_code);
  record.u16("modem country code", one.modem_country_code);
  record.u8("embedded remote line", one.remote_line);
  record.u8("switch type", one.switch_type);
  record.flag(one.front_panel_access);
  record.flag(one.modem_access);
}

UsedLine read_line(ByteReader& record) {
  UsedLine line;
  line.base_slot = record.u8("base slot");
  line.offset = record.u8("slot offset");
  line.line = record.u8("line");
  line.rtqa_option = record.u8("RTQA option");
  return line;
}

PartitionSettings read_partition_settings(ByteReader& record) {
  PartitionSettings result;
  result.start = read_optional_node_name(record);
  result.remote = read_optional_node_name(record);
  result.line_assignment = record.u16("line assignment");
  result.message_type = record.u8("message type");
  result.enabled = record.flag("enabled");
  return result;
}

void write_partition_settings(ByteWriter& record, const PartitionSettings& one) {
  write_node_name(record, one.start);
  write_node_name(record, one.remote);
  record.u16("line assignment", one.line_assignment);
  record.u8("message type", one.message_type);
  record.flag(one.enabled);
}

void check_system(const SectionReader& file, const SystemImage& image) {
  if (image.partitions.empty()) file.refuse("It has no partition");
  require_unique(file, image.partitions, "partitions", [](const PartitionName& one) { return one.number; });
  require_unique(file, image.lines, "lines",
                 [](const UsedLine& one) { return std::tuple(one.base_slot, one.offset, one.line); });
}

}  // namespace

SystemImage read_system_image(std::string_view bytes) {
  const SectionReader file(bytes, kForm);
  check_content(file, kSystemContent);
  SystemImage image;
  file.one(kSettingsSection, "settings", kSystemSettingsLength,
           [&](ByteReader& record) { image.settings = read_system_settings(record); });
  file.each(kPartitionsSection, "partitions", kPartitionLength, [&](ByteReader& record) {
    PartitionName partition;
    partition.number = record.in_range("partition", 1, 1, 64);
    partition.name = record.text("partition name", kPartitionNameWidth);
    image.partitions.push_back(std::move(partition));
  });
  file.each(kLinesSection, "lines", kLineLength,
            [&](ByteReader& record) { image.lines.push_back(read_line(record)); });
  check_system(file, image);
  return image;
}

PartitionImage read_partition_image(std::string_view bytes) {
  const SectionReader file(bytes, kForm);
  check_content(file, kPartitionContent);
  PartitionImage image;
  image.partition = read_partition(file);
  file.one(kSettingsSection, "settings", kPartitionSettingsLength,
           [&](ByteReader& record) { image.settings = read_partition_settings(record); });
  file.each(kNodesSection, "nodes", kNodeLength, [&](ByteReader& record) {
    const NodeName node = read_node_name(record);
    image.nodes.push_back({node, record.text("description", kDescriptionWidth)});
  });
  require_unique(file, image.nodes, "nodes", [](const PartitionNode& one) { return one.node; });
  return image;
}

std::string write_system_image(const SystemImage& image) {
  SectionWriter file(kForm, {kSystemContent, 0});
  file.section(kSettingsSection, kSystemSettingsLength, std::array{image.settings}, write_system_settings);
  file.section(kPartitionsSection, kPartitionLength, image.partitions,
               [](ByteWriter& record, const PartitionName& one) {
                 record.u8("partition", one.number);
                 record.text("partition name", one.name, kPartitionNameWidth);
               });
  file.section(kLinesSection, kLineLength, image.lines, [](ByteWriter& record, const UsedLine& one) {
    record.u8("base slot", one.base_slot);
    record.u8("slot offset", one.offset);
    record.u8("line", one.line);
    record.u8("RTQA option", one.rtqa_option);
  });
  return file.finish();
}

std::string write_partition_image(const PartitionImage& image) {
  SectionWriter file(kForm, {kPartitionContent, image.partition});
  file.section(kSettingsSection, kPartitionSettingsLength, std::array{image.settings},
               write_partition_settings);
  file.section(kNodesSection, kNodeLength, image.nodes, [](ByteWriter& record, const PartitionNode& one) {
    write_node_name(record, one.node);
    record.text("description", one.description, kDescriptionWidth);
  });
  return file.finish();
}

}  // namespace qvrcom::devicefiles
