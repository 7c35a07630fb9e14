#include "adapters/ftp_reply.h"

#include <gtest/gtest.h>

namespace qvrcom::adapters {
namespace {

TEST(FtpReply, MasksWholeWordsAlone) {
  const struct {
    const char* secret;
    const char* text;
    const char* shown;
  } rows[] = {
      {"5150", "530 5150, 5150: \"5150\"", "530 ***, ***: \"***\""},
      {"5150", "530 51500 a5150 5150\xC3\xA4", "530 51500 a5150 5150\xC3\xA4"},
      {"Open Sesame", "530 OPEN SESAME open sesames", "530 *** open sesames"},
      {"#code", "530 x#code #coded", "530 x*** #coded"},
      {"", "530 No", "530 No"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(masked(row.text, row.secret), row.shown);
  EXPECT_TRUE(too_short_to_mask("\xC3\xA4\xC3\xA4x"));  // characters count, not bytes
  EXPECT_FALSE(too_short_to_mask("5150"));
  EXPECT_FALSE(too_short_to_mask(""));
}

TEST(FtpReply, TakesNothingButANumberForASize) {
  EXPECT_EQ(size_in("213 20000 "), 20000U);
  EXPECT_EQ(size_in("213 0"), 0U);
  for (const char* reply : {"213 -5", "213 +5", "213 5 bytes", "213 ", "212 5", "213 18446744073709551616"})
    EXPECT_EQ(size_in(reply), std::nullopt) << reply;
}

}  // namespace
}  // namespace qvrcom::adapters
