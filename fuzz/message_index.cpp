// Any bytes as a message index: never more records than its length tells, and each reads what its bytes say.
#include "jobs/message_index.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qvrcom::jobs;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto messages = read_message_index(bytes);
  if (messages.size() > size / 8) std::abort();
  for (std::size_t k = 0; k < messages.size(); ++k) {
    const std::size_t record = 8 + 8 * k;
    const auto byte = [&](std::size_t offset) { return offset < size ? data[offset] : 0; };
    const auto low = static_cast<std::uint8_t>(static_cast<std::uint16_t>(messages[k].number));
    if (low != byte(record + 3) || static_cast<std::uint8_t>(messages[k].size) != byte(record + 7))
      std::abort();
  }
  return 0;
}
