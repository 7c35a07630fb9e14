// Any bytes as the small records of a device: the words give back the bytes that they were read from, a file
// that is too short is told, and a length that cannot be is reported in one box.
#include "images/device_records.h"

#include <cstdint>
#include <cstdlib>

#include "doubles/memory_files.h"
#include "doubles/recording_user_interface.h"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

std::string filled(const std::string& bytes, std::size_t count) {
  std::string record = bytes.substr(0, count);
  record.resize(count);
  return record;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qvrcom;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  doubles::MemoryFiles files;
  doubles::RecordingUserInterface ui;
  base::ReceivedValues received;
  images::DeviceRecords records(received, files, ui);
  files.content["x"] = bytes;
  require(images::clock_bytes(records.Struct_Time("x")) == filled(bytes, 8));
  require(received.Shortfall.empty() == (size >= 8));
  require(images::firmware_bytes(records.Struct_Firmware("x")) == filled(bytes, 72));
  require(received.Shortfall.empty() == (size >= 72));
  require(ui.messages.empty());
  records.PARTITION_INFO("x");
  const bool too_large = (size > 0 && data[0] > 127) || (size > 4 && data[4] > 127);
  require(ui.messages.size() == (too_large ? 1U : 0U));
  require(received.PartitionTimes[1].seconds.empty() == too_large);
  return 0;
}
