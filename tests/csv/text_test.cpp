#include "csv/text.h"

#include <gmock/gmock.h>

namespace qvrcom::csv {
namespace {

TEST(CsvText, LosesNoByte) {
  EXPECT_EQ(to_utf8("caf\xC3\xA9"), "caf\xC3\xA9");
  EXPECT_EQ(to_utf8("caf\xE9 \x80"), "caf\xC3\xA9 \xE2\x82\xAC");
  // A single bad byte makes the whole cell Windows-1252.
  EXPECT_EQ(to_utf8("\xC3\xA9\xFF"), "\xC3\x83\xC2\xA9\xC3\xBF");
  std::string previous;
  for (int byte = 0x80; byte < 0x100; ++byte) {
    const std::string text = to_utf8(std::string(1, static_cast<char>(byte)));
    EXPECT_GE(text.size(), 2U) << byte;
    EXPECT_NE(text, previous) << byte;
    previous = text;
  }
}

TEST(CsvText, FoldsCapitals) {
  EXPECT_EQ(fold_case("MSG12 \xC3\x84\xC3\x97\xC3\x9F"), "msg12 \xC3\xA4\xC3\x97\xC3\x9F");      // Ä × ß
  EXPECT_EQ(fold_case("\xC5\xA0\xC5\xA1\xC5\xBD\xC5\xB8"), "\xC5\xA1\xC5\xA1\xC5\xBE\xC3\xBF");  // Š š Ž Ÿ
  EXPECT_EQ(fold_case("\xCE\xA3\xD0\x96\xD0\x81"), "\xCF\x83\xD0\xB6\xD1\x91");                  // Σ Ж Ё
  EXPECT_EQ(fold_case("\xE2\x82\xAC\xC3"), "\xE2\x82\xAC\xC3");  // € and half a character
}

TEST(CsvText, KnowsNumbers) {
  EXPECT_EQ(to_number(" -12.5 "), -12.5);
  EXPECT_EQ(to_number("+3e2"), 300);
  EXPECT_EQ(to_number(".5"), 0.5);
  for (const char* text : {"", " ", "-", "+-1", "1a", "inf", "nan", "0x10", "1,5", "1e999", "00:12:33"})
    EXPECT_FALSE(to_number(text)) << text;
}

}  // namespace
}  // namespace qvrcom::csv
