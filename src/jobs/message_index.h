#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/session_values.h"
#include "platform/files.h"
#include "platform/trap.h"

namespace qvrcom::jobs {

// One message that a device holds.
struct IndexedMessage {
  std::int16_t number = 0;
  std::int32_t size = 0;  // of its file, in bytes
  bool operator==(const IndexedMessage&) const = default;
};

// More bytes than an index of all 65,536 message numbers has are not read.
inline constexpr std::size_t kMessageIndexLimit = 8 + 8 * 65536;

// The records of a message index: eight bytes of header, then eight a message, all numbers with the highest
// byte first. Their count is rounded, halves to even; a last record that is cut counts as filled up with
// zeros.
std::vector<IndexedMessage> read_message_index(std::string_view bytes);

class MessageIndex {
 public:
  MessageIndex(base::ReceivedValues& received, const platform::Files& files, platform::UserInterface& ui)
      : received_(received), files_(files), trap_(ui) {}

  // Fills the session's list of message numbers from a message index file, with one spare element at the end.
  void Process_MsgIndex(const std::string& index_file);

 private:
  base::ReceivedValues& received_;
  const platform::Files& files_;
  platform::Trap trap_;
};

}  // namespace qvrcom::jobs
