// Any bytes as frames of a terminal: cut into frames that are written back as the bytes they came from.
#include "protocol/terminal_frame.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qvrcom::protocol;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  TerminalFrameReader reader;
  reader.add(bytes);
  std::string again;
  while (const auto frame = reader.next())
    again += terminal_frame_text(frame->kind, frame->payload);
  if (!bytes.starts_with(again)) std::abort();
  return 0;
}
