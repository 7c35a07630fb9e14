#include "protocol/terminal_frame.h"

#include <algorithm>

namespace qvrcom::protocol {
namespace {

constexpr std::size_t kHead = 3;  // kind and length

}  // namespace

std::string terminal_frame_text(char kind, std::string_view payload) {
  payload = payload.substr(0, kTerminalPayloadLimit);
  std::string text{kind, static_cast<char>(payload.size() >> 8U), static_cast<char>(payload.size() & 0xFFU)};
  return text.append(payload);
}

std::string terminal_data_text(std::string_view bytes) {
  std::string text;
  for (std::size_t at = 0; at < bytes.size(); at += kTerminalPayloadLimit)
    text += terminal_frame_text(kTerminalData, bytes.substr(at, kTerminalPayloadLimit));
  return text;
}

std::optional<TerminalFrame> TerminalFrameReader::next() {
  if (damaged_ || waiting_.size() < kHead) return std::nullopt;
  const auto byte = [this](std::size_t at) { return static_cast<unsigned char>(waiting_[at]); };
  const std::size_t length = (std::size_t{byte(1)} << 8U) | byte(2);
  damaged_ = length > kTerminalPayloadLimit;
  if (damaged_ || waiting_.size() < kHead + length) return std::nullopt;
  TerminalFrame frame{waiting_[0], waiting_.substr(kHead, length)};
  waiting_.erase(0, kHead + length);
  return frame;
}

}  // namespace qvrcom::protocol
