#pragma once

#include <string>

#include "devicefiles/bytes.h"

namespace qvrcom::doubles {

// A device's file "sysinfo": 8 partitions, an hour of message memory, up for 90,061 seconds.
inline std::string system_information_bytes(const std::string& firmware) {
  devicefiles::ByteWriter writer;
  writer.bytes("QI\x01\x48");
  writer.text("firmware", firmware, 8 + 16 + 12);  // no serial number, no model
  for (const std::uint32_t number : {2U, 24U, 8U, 0U})
    writer.u8("number", number);
  for (const std::uint32_t number : {8000U * 3600, 0U, 90'061U, 0U, 0U, 0U})
    writer.u32(number);
  writer.u32(devicefiles::crc32(writer.str()));
  return writer.str();
}

}  // namespace qvrcom::doubles
