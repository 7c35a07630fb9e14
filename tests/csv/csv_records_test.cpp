#include "csv/csv_records.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace qvrcom::csv {
namespace {

using namespace std::string_literals;
using Records = std::vector<Record>;

struct Case {
  const char* name;
  std::string text;
  Records records;
};

const std::vector<Case> kCases = {
    {"empty file", "", {}},
    {"byte order mark alone", "\xEF\xBB\xBF", {}},
    {"byte order mark",
     "\xEF\xBB\xBF"
     "a,b\n",
     {{"a", "b"}}},
    {"no line end at the end", "a,b", {{"a", "b"}}},
    {"separator at the end", "a,", {{"a", ""}}},
    {"every line end", "a\r\nb\nc\rd", {{"a"}, {"b"}, {"c"}, {"d"}}},
    {"empty lines", "\n\r\na\n", {{""}, {""}, {"a"}}},
    {"ragged", "a\nb,c,d\n,\n", {{"a"}, {"b", "c", "d"}, {"", ""}}},
    {"quotes", "\"a,b\",\"c\"\"d\"\n", {{"a,b", "c\"d"}}},
    {"line breaks in quotes", "\"a\r\nb\",\"c\nd\"\r\n", {{"a\r\nb", "c\nd"}}},
    {"quote inside a plain field", "a\"b,c\n", {{"a\"b", "c"}}},
    {"text behind a closing quote", "\"a\"b\"c,d\n", {{"ab\"c", "d"}}},
    {"empty quotes", "\"\",\"\"\n", {{"", ""}}},
    {"unclosed quote", "a,\"b\nc,d", {{"a", "b\nc,d"}}},
    {"quote as the last byte", "a,\"", {{"a", ""}}},
    {"NUL and high bytes", "a\0b,\xE9\n"s, {{"a\0b"s, "\xE9"}}},
};

TEST(CsvRecords, ReadsEveryForm) {
  for (const Case& each : kCases)
    EXPECT_EQ(parse_csv(each.text), each.records) << each.name;
}

TEST(CsvRecords, WritesWhatItReads) {
  const Records records = {{"plain", " blank ", "a,b", "say \"x\"", "two\r\nlines", ""}, {""}, {"", ""}};
  std::string text;
  for (const Record& record : records)
    text += csv_line(record);
  EXPECT_EQ(text, "plain,\" blank \",\"a,b\",\"say \"\"x\"\"\",\"two\r\nlines\",\r\n\"\"\r\n,\r\n");
  EXPECT_EQ(parse_csv(text), records);
}

}  // namespace
}  // namespace qvrcom::csv
