// Any bytes as the small records of a device: the words give back the bytes that they were read from, a file
// that is too short is told, and a length that cannot be is reported in one box.
#include "images/device_records.h"

#include "doubles/memory_files.h"
#include "doubles/recording_user_interface.h"
#include "entry.h"

void fuzz(std::string_view bytes) {
  using namespace qvrcom;
  doubles::MemoryFiles files;
  doubles::RecordingUserInterface ui;
  base::ReceivedValues received;
  images::DeviceRecords records(received, files, ui);
  files.content["x"] = bytes;
  const auto filled = [&](std::size_t count) {
    std::string record(bytes.substr(0, count));
    record.resize(count);
    return record;
  };
  require(images::clock_bytes(records.Struct_Time("x")) == filled(8));
  require(received.Shortfall.empty() == (bytes.size() >= 8));
  require(images::firmware_bytes(records.Struct_Firmware("x")) == filled(72));
  require(received.Shortfall.empty() == (bytes.size() >= 72));
  require(ui.messages.empty());
  records.PARTITION_INFO("x");
  const std::string lengths = filled(8);
  const bool too_large = (lengths[0] & 0x80) != 0 || (lengths[4] & 0x80) != 0;
  require(ui.messages.size() == (too_large ? 1U : 0U));
  require(received.PartitionTimes[1].seconds.empty() == too_large);
}
