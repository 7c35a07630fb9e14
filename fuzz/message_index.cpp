// Any bytes as a message index: never more records than its length tells, and each reads what its bytes say.
#include "jobs/message_index.h"

#include "entry.h"

void fuzz(std::string_view bytes) {
  using namespace qvrcom::jobs;
  const auto messages = read_message_index(bytes);
  require(messages.size() <= bytes.size() / 8);
  for (std::size_t k = 0; k < messages.size(); ++k) {
    const std::size_t record = 8 + 8 * k;
    const auto byte = [&](std::size_t offset) { return offset < bytes.size() ? bytes[offset] : '\0'; };
    require(static_cast<char>(messages[k].number) == byte(record + 3));
    require(static_cast<char>(messages[k].size) == byte(record + 7));
  }
}
