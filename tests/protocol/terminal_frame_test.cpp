#include "protocol/terminal_frame.h"

#include <gtest/gtest.h>

namespace qvrcom::protocol {
namespace {

TEST(TerminalFrame, IsCutOutOfAnyStream) {
  const std::string big(kTerminalPayloadLimit + 5, 'x');
  const std::string stream =
      terminal_frame_text(kTerminalAttach, "JobA") + terminal_data_text(big) + terminal_data_text("");
  const std::vector<TerminalFrame> expected{
      {'A', "JobA"}, {'D', big.substr(0, kTerminalPayloadLimit)}, {'D', "xxxxx"}};
  for (const std::size_t step : {std::size_t{1}, std::size_t{7}, stream.size()}) {
    TerminalFrameReader reader;
    std::vector<TerminalFrame> frames;
    for (std::size_t at = 0; at < stream.size(); at += step) {
      reader.add(std::string_view(stream).substr(at, step));
      while (auto frame = reader.next())
        frames.push_back(*frame);
    }
    EXPECT_EQ(frames, expected);
    EXPECT_FALSE(reader.damaged());
  }
}

TEST(TerminalFrame, AnnouncingTooMuchIsDamage) {
  TerminalFrameReader reader;
  reader.add("D\x40\x01");
  EXPECT_EQ(reader.next(), std::nullopt);
  EXPECT_TRUE(reader.damaged());
  reader.add(std::string(20000, 'x'));
  EXPECT_EQ(reader.next(), std::nullopt);
}

}  // namespace
}  // namespace qvrcom::protocol
