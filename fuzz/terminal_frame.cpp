// Any bytes as frames of a terminal: cut into frames that are written back as the bytes they came from.
#include "protocol/terminal_frame.h"

#include "entry.h"

void fuzz(std::string_view bytes) {
  using namespace qvrcom::protocol;
  TerminalFrameReader reader;
  reader.add(bytes);
  std::string again;
  while (const auto frame = reader.next())
    again += terminal_frame_text(frame->kind, frame->payload);
  require(bytes.starts_with(again));
}
