#include <gtest/gtest.h>

#include "base/date_serial.h"
#include "base/number.h"
#include "base/registry_text.h"
#include "base/rows.h"
#include "base/text.h"
#include "doubles/caught.h"

namespace qvrcom::base {
namespace {

using doubles::fault_of;

TEST(DateSerial, IsTheShortestDecimalOfTenDecimals) {
  const struct {
    LocalTime moment;
    const char* text;
  } cases[] = {
      {local_time(2026, 11, 15, 12, 10, 5), "46341.5070023148"},
      {local_time(2026, 11, 15), "46341"},
      {local_time(1899, 12, 29, 12), "-0.5"},
      {local_time(1899, 12, 31, 0, 0, 1), "1.0000115741"},
      {local_time(2026, 11, 15, 23, 59, 59), "46341.9999884259"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(serial_text(c.moment), c.text);
    EXPECT_EQ(from_date_serial(*parse_number(c.text)), c.moment) << c.text;
  }
}

TEST(DateSerial, ReadsAnyDecimalTextAndNothingElse) {
  for (const char* good : {"46341.5", " 46341.5 ", "4.63415e4", "+46341.5", "46341.50"}) {
    EXPECT_EQ(parse_number(good), 46341.5) << good;
  }
  for (const char* bad : {"", " ", "46341,5", "12x", "1e999", "nan", "inf", "+-1"}) {
    EXPECT_FALSE(parse_number(bad).has_value()) << bad;
  }
  EXPECT_FALSE(from_date_serial(1e12));
  EXPECT_FALSE(from_date_serial(-1e12));
}

TEST(DateSerial, Stamps) {
  EXPECT_EQ(job_name_stamp(local_time(2009, 5, 1)), "May0109000000");
  EXPECT_EQ(index_stamp(local_time(2026, 3, 5, 7, 8, 9)), "05/03/2026 07:08:09");
}

TEST(Number, FollowsTheOneRule) {
  const struct {
    const char* text;
    int value;
  } good[] = {{" 7 ", 7}, {"+7", 7}, {"1.5", 2},         {"2.5", 2},         {"2.50001", 3},    {"-1.5", -2},
              {"7.", 7},  {".9", 1}, {"0032767", 32767}, {"-32768", -32768}, {"32767.4", 32767}};
  for (const auto& c : good)
    EXPECT_EQ(to_int16(c.text), c.value) << c.text;
  for (const char* text : {"", " ", ".", "-", "1e3", "7x", "0x10", "1,5", "- 7"}) {
    EXPECT_EQ(fault_of([&] { to_int16(text); }), "Type mismatch") << text;
  }
  for (const char* text : {"32768", "-32769", "40000", "32767.5", "99999999999999999999999999"}) {
    EXPECT_EQ(fault_of([&] { to_int16(text); }), "Overflow") << text;
  }
  EXPECT_EQ(to_int32("2147483647"), 2147483647);
  EXPECT_EQ(fault_of([] { to_int32("2147483648"); }), "Overflow");
}

TEST(Text, Lines) {
  using Lines = std::vector<std::string_view>;
  EXPECT_EQ(lines_of(""), Lines{});
  EXPECT_EQ(lines_of("a\r\nb"), (Lines{"a", "b"}));
  EXPECT_EQ(lines_of("a\n\r\n\nb\r\r\n"), (Lines{"a", "", "", "b\r"}));
  EXPECT_EQ(trim("  a b  "), "a b");
  EXPECT_TRUE(equals_ignoring_case("C:\\Jobs", "c:\\jobs"));
  EXPECT_FALSE(equals_ignoring_case("jobs", "jobs "));
}

TEST(Text, Utf8) {
  for (const char* good : {"", "abc", "Z\xC3\xBCrich", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"})
    EXPECT_TRUE(is_utf8(good));
  for (const char* bad :
       {"\xC3", "\xFC", "\xC0\xAF", "\xE2\x82", "\xED\xA0\x80", "\xF5\x80\x80\x80", "a\x80"}) {
    EXPECT_FALSE(is_utf8(bad)) << bad;
  }
}

TEST(Rows, FieldsByNameAndTheirSubstitutes) {
  Rows rows({"SiteID", "Name"});
  rows.add({"7", std::nullopt});
  rows.add({"8", ""});
  EXPECT_EQ(rows[0].text("siteid"), "7");
  EXPECT_EQ(rows[0].text("Name", "none"), "none");
  EXPECT_EQ(rows[1].text("Name", "none"), "");
  EXPECT_EQ(rows[1].text_or("Name", "none"), "none");
  EXPECT_EQ(fault_of([&] { (void)rows[0]["Nope"]; }), "Item not found in this collection");
  EXPECT_NE(fault_of([&] { rows.add({"9"}); }), "");
}

TEST(RegistryText, ReadsEveryTypeAndWritesItBack) {
  const std::string text =
      "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\X]\r\n"
      "\"A\"=\"C:\\\\a \\\"b\\\"\"\r\n\"B\"=hex:00,ff\r\n\"C\"=dword:0000002a\r\n"
      "\"D\"=hex(7):61,00,\\\r\n  62,00,00\r\n\"E\"=hex(2):25,41,25,00\r\n";
  const RegistryText registry = RegistryText::parse(text);
  const char* key = "hkey_local_machine\\software\\x";
  using namespace std::string_literals;
  EXPECT_EQ(registry.value(key, "a"), (RegistryData{1, "C:\\a \"b\"\0"s}));
  EXPECT_EQ(registry.value(key, "B"), (RegistryData{3, "\0\xFF"s}));
  EXPECT_EQ(registry.value(key, "C"), (RegistryData{4, "\x2A\0\0\0"s}));
  EXPECT_EQ(registry.value(key, "D"), (RegistryData{7, "a\0b\0\0"s}));
  EXPECT_EQ(registry.value(key, "E"), (RegistryData{2, "%A%\0"s}));
  EXPECT_FALSE(registry.value(key, "F"));
  EXPECT_EQ(RegistryText::parse(registry.text()).text(), registry.text());
}

TEST(RegistryText, RefusesDamageByItsLine) {
  for (const char* text : {"[K]\n\"A\"=\"b\"\n", "REGEDIT4\n\"A\"=\"b\"\n", "REGEDIT4\n[K]\n\"A\"=\"b\n",
                           "REGEDIT4\n[K]\n\"A\"=dword:xyz\n", "REGEDIT4\n[K]\nrubbish\n",
                           "REGEDIT4\n[K]\n\"A\"=hex:100\n", "REGEDIT4\n[K]\n\"A\"=\"b\" more\n"}) {
    EXPECT_EQ(fault_of([&] { RegistryText::parse(text); }), "Invalid settings file") << text;
  }
}

}  // namespace
}  // namespace qvrcom::base
