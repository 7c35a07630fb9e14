// Any bytes as a posted message: dropped, or read into values that are written back and read as the same.
#include "protocol/message_line.h"

#include "entry.h"

void fuzz(std::string_view bytes) {
  using namespace qvrcom::protocol;
  const auto line = read_message_line(bytes);
  if (!line) return;
  std::string text = message_line_text(*line);
  require(text.size() <= kMessageLineLimit);
  text.pop_back();
  require(read_message_line(text) == line);
}
