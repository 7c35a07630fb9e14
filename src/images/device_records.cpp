#include "images/device_records.h"

#include <cmath>
#include <limits>
#include <optional>
#include <tuple>

#include "base/fault.h"

namespace qvrcom::images {
namespace {

constexpr std::size_t kWordSize = 4;
constexpr double kSamplesPerSecond = 8000;
constexpr std::int32_t kSecondsPerMinute = 60;

constexpr std::uint32_t byte_at(std::string_view bytes, std::size_t offset) {
  return static_cast<unsigned char>(bytes[offset]);
}

// `bytes` has exactly the record's size.
template <std::size_t Count>
Words<Count> words_of(std::string_view bytes) {
  Words<Count> words{};
  for (std::size_t i = 0; i < Count * kWordSize; ++i)
    words[i / kWordSize] |= byte_at(bytes, i) << (8 * (i % kWordSize));
  return words;
}

template <std::size_t Count>
std::string bytes_of(const Words<Count>& words) {
  std::string bytes;
  for (std::size_t i = 0; i < Count * kWordSize; ++i)
    bytes.push_back(static_cast<char>((words[i / kWordSize] >> (8 * (i % kWordSize))) & 0xFFU));
  return bytes;
}

// Highest byte first. Nothing when the value does not fit 31 bits.
std::optional<std::int32_t> sample_count(std::string_view bytes, std::size_t offset) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < kWordSize; ++i)
    value = value << 8U | byte_at(bytes, offset + i);
  if (value > static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max())) return std::nullopt;
  return static_cast<std::int32_t>(value);
}

}  // namespace

std::string clock_bytes(const ClockRecord& record) {
  return bytes_of(record);
}
std::string firmware_bytes(const FirmwareRecord& record) {
  return bytes_of(record);
}

ClockRecord clock_record(std::string_view bytes) {
  return words_of<std::tuple_size_v<ClockRecord>>(bytes);
}

void DeviceRecords::PARTITION_INFO(const std::string& file_name) {
  trap_("PARTITION_INFO", [&] {
    const std::string bytes = first_bytes(file_name, received_.PartitionTimes.size() * kWordSize);
    for (std::size_t i = 0; i < received_.PartitionTimes.size(); ++i) {
      const auto count = sample_count(bytes, i * kWordSize);
      if (!count) {
        throw base::Fault(base::kOverflow, files_.native(file_name) +
                                               " tells a length of more than 2147483647 samples. " +
                                               received_.Shortfall);
      }
      received_.PartitionTimes[i] = TIME_CONVERSIONS(*count);
    }
  });
}

base::TimeRecord DeviceRecords::TIME_CONVERSIONS(std::int32_t count) {
  const auto seconds = static_cast<std::int32_t>(std::nearbyint(count / kSamplesPerSecond));
  return {std::to_string(seconds % kSecondsPerMinute), std::to_string(seconds / kSecondsPerMinute)};
}

ClockRecord DeviceRecords::Struct_Time(const std::string& file_name) {
  return trap_("Struct_Time", [&] {
    return words_of<std::tuple_size_v<ClockRecord>>(first_bytes(file_name, sizeof(ClockRecord)));
  });
}

FirmwareRecord DeviceRecords::Struct_Firmware(const std::string& file_name) {
  return trap_("Struct_Firmware", [&] {
    return words_of<std::tuple_size_v<FirmwareRecord>>(first_bytes(file_name, sizeof(FirmwareRecord)));
  });
}

// Exactly `count` bytes, zeros standing for those that the file lacks.
std::string DeviceRecords::first_bytes(const std::string& file_name, std::size_t count) {
  received_.Shortfall.clear();
  std::string bytes = files_.read(file_name);
  if (bytes.size() < count) {
    received_.Shortfall = files_.native(file_name) + " holds " + std::to_string(bytes.size()) + " of " +
                          std::to_string(count) + " bytes; the missing ones count as 0.";
  }
  bytes.resize(count);
  return bytes;
}

}  // namespace qvrcom::images
