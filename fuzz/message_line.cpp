// Any bytes as a posted message: dropped, or read into values that are written back and read as the same.
#include "protocol/message_line.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qvrcom::protocol;
  const auto line = read_message_line({reinterpret_cast<const char*>(data), size});
  if (!line) return 0;
  std::string text = message_line_text(*line);
  if (text.size() > kMessageLineLimit) std::abort();
  text.pop_back();
  if (read_message_line(text) != line) std::abort();
  return 0;
}
