#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/session_values.h"
#include "platform/files.h"
#include "platform/trap.h"

namespace qvrcom::images {

// A record of 32-bit words as a device stores them, the lowest byte first.
template <std::size_t Count>
using Words = std::array<std::uint32_t, Count>;

using ClockRecord = Words<2>;      // the device's clock, 8 bytes
using FirmwareRecord = Words<18>;  // its system information, 72 bytes

// The bytes that a record was read from.
std::string clock_bytes(const ClockRecord& record);
std::string firmware_bytes(const FirmwareRecord& record);

// The record that a clock's 8 bytes hold.
ClockRecord clock_record(std::string_view bytes);

// Reads the small binary files that a device sends. Bytes that a short file lacks count as 0; the session's
// `Shortfall` then says how long it was. A missing file is reported and gives zeros.
class DeviceRecords {
 public:
  DeviceRecords(base::ReceivedValues& received, const platform::Files& files, platform::UserInterface& ui)
      : received_(received), files_(files), trap_(ui, platform::kImagesTrap) {}

  // Two sample counts, 32 bits each, highest byte first, to the session's partition times. One that exceeds
  // 31 bits is an "Overflow": it and the one behind it leave their times as they were.
  void PARTITION_INFO(const std::string& file_name);

  // Samples, 8000 a second, to the nearest second, halves to the even one.
  static base::TimeRecord TIME_CONVERSIONS(std::int32_t count);

  ClockRecord Struct_Time(const std::string& file_name);
  FirmwareRecord Struct_Firmware(const std::string& file_name);

 private:
  std::string first_bytes(const std::string& file_name, std::size_t count);

  base::ReceivedValues& received_;
  const platform::Files& files_;
  platform::Trap trap_;
};

}  // namespace qvrcom::images
