#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "devicefiles/node_types.h"

// The device file "dbase": the system image in the device's own account, a partition image in a partition's;
// docs/formats/dbase.md.
namespace qvrcom::devicefiles {

// What holds for the whole device.
struct SystemSettings {
  std::uint32_t machine_type = 2;        // 2 or 3
  std::uint32_t highest_partition = 64;  // 1 to 64
  std::uint32_t card_variant = 0;        // 0 to 255
  std::uint32_t country_code = 1;        // telephone country code, 0 to 999
  std::uint32_t modem_country_code = 1;  // likewise
  std::uint32_t impedance = 0;           // of the lines, 0 to 255, the card's own numbering
  std::uint32_t remote_line = 0;         // embedded remote line, 0 none
  std::uint32_t switch_type = 0;         // telephone switch of the lines' RTQA options, 0 to 255
  bool front_panel_access = false;
  bool modem_access = false;

  bool operator==(const SystemSettings&) const = default;
};

struct PartitionName {
  std::uint32_t number = 1;  // 1 to 64
  std::string name;          // at most 32 bytes

  bool operator==(const PartitionName&) const = default;
};

// A telephone line in use, known by its place.
struct UsedLine {
  std::uint32_t base_slot = 0;    // 0 to 255
  std::uint32_t offset = 0;       // slot offset, 0 to 255
  std::uint32_t line = 0;         // 0 to 255
  std::uint32_t rtqa_option = 0;  // 0 to 255

  bool operator==(const UsedLine&) const = default;
};

// At least one partition; every partition and every line stands once.
struct SystemImage {
  SystemSettings settings;
  std::vector<PartitionName> partitions;  // those that are there
  std::vector<UsedLine> lines;

  bool operator==(const SystemImage&) const = default;
};

struct PartitionSettings {
  NodeName start;                     // where calls begin; none: type and number 0
  NodeName remote;                    // where remote calls begin, likewise
  std::uint32_t line_assignment = 0;  // 0 to 65535
  std::uint32_t message_type = 0;     // 0 to 255
  bool enabled = true;

  bool operator==(const PartitionSettings&) const = default;
};

struct PartitionNode {
  NodeName node;
  std::string description;  // at most 40 bytes

  bool operator==(const PartitionNode&) const = default;
};

// Every node stands once.
struct PartitionImage {
  std::uint32_t partition = 1;  // 1 to 64
  PartitionSettings settings;
  std::vector<PartitionNode> nodes;

  bool operator==(const PartitionImage&) const = default;
};

// `bytes` is the whole file. Fault when it is none of this suite, of another version, the other kind of
// image, or damaged.
SystemImage read_system_image(std::string_view bytes);
PartitionImage read_partition_image(std::string_view bytes);

// Fault "Overflow" when a value does not fit its field.
std::string write_system_image(const SystemImage& image);
std::string write_partition_image(const PartitionImage& image);

}  // namespace qvrcom::devicefiles
