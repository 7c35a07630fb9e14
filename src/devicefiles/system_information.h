#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/date_serial.h"

// The device file "sysinfo"; docs/formats/sysinfo.md.
namespace qvrcom::devicefiles {

struct SystemInformation {
  std::string firmware;            // version text, at most 8 bytes
  std::string serial_number;       // at most 16 bytes
  std::string model;               // at most 12 bytes
  std::uint32_t machine_type = 2;  // 2 or 3
  std::uint32_t lines = 0;         // telephone lines, 0 to 255
  std::uint32_t partitions = 1;    // that are present, 0 to 64
  std::uint32_t memory = 0;        // message memory in samples (8000 a second)
  std::uint32_t memory_used = 0;   // likewise, at most `memory`
  std::uint32_t uptime = 0;        // seconds since the device started
  base::LocalTime moment{};        // of the device's clock, when the file was made

  bool operator==(const SystemInformation&) const = default;
};

// `bytes` is the whole file, 72 bytes. Fault when it is none of this suite, of another version, or damaged.
SystemInformation read_system_information(std::string_view bytes);

}  // namespace qvrcom::devicefiles
