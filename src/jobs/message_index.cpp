#include "jobs/message_index.h"

#include <cmath>
#include <utility>

#include "base/fault.h"

namespace qvrcom::jobs {
namespace {

constexpr std::size_t kHeaderSize = 8;
constexpr std::size_t kRecordSize = 8;
constexpr std::size_t kNumberOffset = 2;
constexpr std::size_t kSizeOffset = 4;

// `width` bytes, highest first; those behind the end count as 0.
std::uint32_t number_at(std::string_view bytes, std::size_t offset, std::size_t width) {
  std::uint32_t value = 0;
  for (std::size_t i = offset; i < offset + width; ++i)
    value = value << 8U | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
  return value;
}

std::size_t record_count(std::size_t length) {
  if (length <= kHeaderSize) return 0;
  return static_cast<std::size_t>(std::nearbyint(static_cast<double>(length - kHeaderSize) / kRecordSize));
}

}  // namespace

std::vector<IndexedMessage> read_message_index(std::string_view bytes) {
  bytes = bytes.substr(0, kMessageIndexLimit);
  std::vector<IndexedMessage> messages(record_count(bytes.size()));
  for (std::size_t k = 0; k < messages.size(); ++k) {
    const std::size_t record = kHeaderSize + k * kRecordSize;
    messages[k].number = static_cast<std::int16_t>(number_at(bytes, record + kNumberOffset, 2));
    messages[k].size = static_cast<std::int32_t>(number_at(bytes, record + kSizeOffset, 4));
  }
  return messages;
}

void MessageIndex::Process_MsgIndex(const std::string& index_file) {
  trap_("Process_MsgIndex", [&] {
    received_.MessageNumbers.assign(1, {});
    const std::uint64_t length = files_.length(index_file);
    if (length <= kHeaderSize) return;
    if (length > kMessageIndexLimit) {
      throw base::Fault("File too large",
                        files_.native(index_file) + " is larger than an index of all messages can be.");
    }
    std::vector<std::string> numbers;
    for (const IndexedMessage& message : read_message_index(files_.read(index_file)))
      numbers.push_back(std::to_string(message.number));
    numbers.emplace_back();
    received_.MessageNumbers = std::move(numbers);
  });
}

}  // namespace qvrcom::jobs
