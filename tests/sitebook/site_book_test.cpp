#include "sitebook/site_book.h"

#include <gmock/gmock.h>

#include "adapters/temporary_suite.h"
#include "base/text.h"
#include "doubles/caught.h"
#include "sitebook/sample_site.h"
#include "sitebook/site_csv.h"

namespace qvrcom::sitebook {
namespace {

using doubles::whole_fault_of;
using testing::ElementsAre;

SiteRecord site(const std::string& name, const std::string& identifier) {
  SiteRecord record;
  record.name = name;
  record.identifier = identifier;
  return record;
}

TEST(SiteProblems, RefusesWhatAJobCannotCarry) {
  struct Case {
    base::Field SiteRecord::*member;
    std::string text;
    std::string reason;  // "" when the text is accepted
  };
  const Case cases[] = {
      {&SiteRecord::name, "a^b", "Site name holds \";\" or \"^\"."},
      {&SiteRecord::dialup, "x;", "Dial-up connection holds \";\" or \"^\"."},
      {&SiteRecord::lan, "a;b", "LAN address holds \";\" or \"^\"."},
      {&SiteRecord::modem, "host:x", "Modem address has a port that is no number."},
      {&SiteRecord::name, "a\nb", "Site name holds a control character."},
      {&SiteRecord::access_code, "a\tb", "Access code holds a control character."},
      {&SiteRecord::name, "\xFF", "Site name holds bytes that are no text."},
      {&SiteRecord::method, "LAN", "Connection method is no number between 0 and 9999."},
      {&SiteRecord::number, std::string(kSiteTextLimit + 1, 'x'),
       "Number to dial is longer than 3000 bytes."},
      {&SiteRecord::access_code, "p;^w", ""},
      {&SiteRecord::lan, "", ""},
  };
  for (const Case& one : cases) {
    SiteRecord record = site("Office", "");
    record.*one.member = one.text;
    EXPECT_EQ(reasons_of(problems_of(record)), one.reason) << one.text;
  }
}

TEST(SiteProblems, RefusesWhatAJobHasNoRoomFor) {
  const std::string full(kSiteTextLimit, 'x');
  SiteRecord record = site(full, "");
  record.number = full;
  EXPECT_EQ(reasons_of(problems_of(record)), "");
  record.identifier = "7";
  EXPECT_EQ(reasons_of(session_problems_of(record)),
            "Site name and site identifier together are longer than 3000 bytes.");
  EXPECT_NE(reasons_of(problems_of(site("  ", ""))), "");
  EXPECT_TRUE(session_problems_of(site("  ", "")).empty()) << "a session needs neither of the two";
}

struct SiteBookTest : testing::Test, adapters::TemporarySuite {
  SiteBookTest() { set_up(); }
  SiteBook book{connection};
};

TEST_F(SiteBookTest, AddsEditsAndRemovesWithTheStatisticsSettings) {
  SiteRecord office = site("Office", "101");
  office.number = "";
  office.site_id = book.add(office);
  EXPECT_THAT(book.list(), ElementsAre(office)) << "nulls and empty texts stay apart";
  EXPECT_EQ(value("SELECT SiteID || FileType || AutoIncrements FROM File_Handling"),
            std::to_string(office.site_id) + "Statistics");

  const SiteRecord shown = office;
  office.lan = "10.0.0.9";
  book.edit(shown, office);
  EXPECT_THAT(book.list(), ElementsAre(office));

  EXPECT_EQ(whole_fault_of([&] { book.add(site("Other", "101")); }),
            "Site refused: \"Other - 101\": Site identifier \"101\" belongs to another site.");
  SiteRecord other = site("Other", "102");
  other.site_id = book.add(other);
  SiteRecord doubled = other;
  doubled.identifier = "101";
  EXPECT_THAT(whole_fault_of([&] { book.edit(other, doubled); }), testing::StartsWith("Site refused"));
  book.add(site("No identifier", ""));
  book.add(site("No identifier either", ""));

  SiteRecord gone[] = {office, other};
  gone[1].site_id = 99;
  EXPECT_EQ(whole_fault_of([&] { book.remove(gone); }),
            "Site not found: The site book has no site with the key 99.");
  EXPECT_EQ(book.list().size(), 4U) << "all or none";
  book.remove({&office, 1});
  EXPECT_EQ(book.list().size(), 3U);
  EXPECT_EQ(value("SELECT COUNT(*) FROM File_Handling"), "3");
  EXPECT_THAT(whole_fault_of([&] { book.edit(shown, office); }), testing::StartsWith("Site not found"));
}

TEST_F(SiteBookTest, ChangesAndRemovesOnlyWhatWasShown) {
  SiteRecord shown = site("Office", "101");
  shown.site_id = book.add(shown);
  SiteRecord stored = shown;
  stored.lan = "10.0.0.9";
  book.edit(shown, stored);
  SiteRecord wanted = shown;
  wanted.number = stored.number = "5";
  book.edit(shown, wanted);
  EXPECT_THAT(book.list(), ElementsAre(stored)) << "the address stays as somebody else has set it";
  wanted.lan = "10.0.0.1";
  const std::string refusal =
      "Site changed: The site book has something else by now for the site \"Office - 101\": LAN address, "
      "Number to dial. Refresh the list, then try again.";
  EXPECT_EQ(whole_fault_of([&] { book.edit(shown, wanted); }), refusal);
  SiteRecord second = site("Depot", "");
  second.site_id = book.add(second);
  const SiteRecord both[] = {second, shown};
  EXPECT_EQ(whole_fault_of([&] { book.remove(both); }), refusal);
  SiteRecord renamed = stored;
  renamed.name = "Harbour";
  book.edit(stored, renamed);
  wanted = stored;
  wanted.modem = "10.0.0.2";
  EXPECT_THAT(whole_fault_of([&] { book.edit(stored, wanted); }), testing::StartsWith("Site changed"));
  EXPECT_THAT(book.list(), ElementsAre(renamed, second));
}

TEST_F(SiteBookTest, FindsByKeyIdentifierOrTitle) {
  const std::int32_t key = book.add(site("Office", "101"));
  const std::int32_t depot = book.add(site("Depot", std::to_string(key)));
  const auto found = book.find({std::to_string(depot), "101", "Office - 101"});
  ASSERT_EQ(found.size(), 2U) << "each once, in the order of the keys";
  EXPECT_EQ(found[0].name, "Depot");
  EXPECT_EQ(found[1].site_id, key);
  for (const char* none : {"office - 101", ""})
    EXPECT_THAT(whole_fault_of([&] { book.find({"101", none}); }), testing::StartsWith("Site not found"));
  EXPECT_THAT(whole_fault_of([&] { book.find({std::to_string(key)}); }),
              testing::StartsWith("Site is ambiguous"));
}

TEST_F(SiteBookTest, ExportsAndImportsCsv) {
  SiteRecord office = site("Office, \"main\"", "007");
  office.access_code = "p;w";
  office.number = "";
  office.site_id = book.add(office);
  SiteRecord depot = site("Depot", "");
  depot.site_id = book.add(depot);
  const std::string text = export_csv(book.list(), AccessCodes::kIncluded);
  EXPECT_THAT(text,
              testing::StartsWith("site-id,name,id,card-type,method,lan,modem,access-code,dialup,number,"
                                  "firmware\r\n1,\"Office, \"\"main\"\"\",007,,,,,p;w,,,\r\n"));
  const ImportResult again = import_csv(book, text);
  EXPECT_EQ(again.added + again.changed, 0U);
  EXPECT_THAT(book.list(), ElementsAre(office, depot)) << "nothing is another than it was";

  book.remove(book.list());
  EXPECT_EQ(import_csv(book, text).added, 2U);
  EXPECT_EQ(book.find({"007"})[0].access_code, "p;w");
  EXPECT_EQ(book.find({"007"})[0].lan, std::nullopt);
  EXPECT_EQ(value("SELECT COUNT(*) FROM File_Handling"), "2");
}

TEST_F(SiteBookTest, ImportLeavesColumnsAloneThatTheFileLacks) {
  SiteRecord office = site("Office", "101");
  office.access_code = "secret";
  office.lan = "10.0.0.1";
  office.site_id = book.add(office);
  SiteRecord depot = site("Depot", "");
  depot.access_code = "secret too";
  depot.site_id = book.add(depot);
  const std::string text = export_csv(book.list(), AccessCodes::kLeftOut);
  EXPECT_THAT(text, testing::Not(testing::HasSubstr("secret")));
  EXPECT_EQ(import_csv(book, text).changed, 0U);

  const std::string change = "id,lan,modem\r\n101,,10.0.0.2\r\n102,10.0.0.3\r\n";
  EXPECT_EQ(try_csv(book.list(), change).changed, 1U);
  EXPECT_THAT(book.list(), ElementsAre(office, depot));
  const ImportResult result = import_csv(book, change);
  EXPECT_EQ(result.changed, 1U);
  EXPECT_EQ(result.added, 1U);
  office.lan.reset();
  office.modem = "10.0.0.2";
  depot.number = "5";
  EXPECT_EQ(import_csv(book, "site-id,number\r\n" + std::to_string(depot.site_id) + ",5\r\n").changed, 1U);
  EXPECT_EQ(book.find({"101"})[0], office);
  EXPECT_EQ(book.find({"Depot - "})[0], depot);
  // The key of another book: this row is a site of its own.
  EXPECT_EQ(import_csv(book, "site-id,name\r\n" + std::to_string(depot.site_id) + ",Harbour\r\n").added, 1U);
}

TEST_F(SiteBookTest, ImportsAllRowsOrNone) {
  const SiteRecord office = site("Office", "101");
  ASSERT_EQ(book.add(office), 1);
  struct Case {
    const char* text;
    std::size_t line;
    const char* reason;
  };
  const Case cases[] = {
      {"", 1, "There is no header row."},
      {"name,colour\nA,red\n", 1, "There is no column \"colour\"."},
      {"id,site-id,Site-ID\n1,1,1\n", 1, "The column \"Site-ID\" is doubled."},
      {"id,name\n1,A\n2,B,C\n", 3, "The row has more fields than the header."},
      {"id,name\n1,\"A\nB\"\n", 2, "Site name holds a control character."},
      {"id,site-id\n\n1,\"x\n\ny\"\n1,\n", 6, "Site identifier \"1\" belongs to line 3."},
      {"site-id,number\n1,5\n1,6\n", 3, "The row is about the site of line 2."},
      {"id,name\n1,A\n2,\"B\n3,C\n", 3,
       "A quotation mark of this row is never closed: the file was cut, or the mark is one too many."},
      {"name,method\nA,0\nB,LAN\n", 3, "Connection method is no number between 0 and 9999."},
  };
  for (const Case& one : cases) {
    const ImportResult result = import_csv(book, one.text);
    ASSERT_EQ(result.problems.size(), 1U) << one.text;
    EXPECT_EQ(result.problems[0].line, one.line) << one.text;
    EXPECT_EQ(result.problems[0].reason, one.reason);
    EXPECT_EQ(book.list().size(), 1U);
    EXPECT_EQ(book.list()[0].number, std::nullopt);
  }
  EXPECT_EQ(import_csv(book, "\xEF\xBB\xBFid , Name\r\n102,B\r\n\r\n103\r\n").added, 2U);
  EXPECT_EQ(title_of(book.find({" - 103"})[0]), "103");
}

TEST_F(SiteBookTest, TheSampleSiteIsAddedOnceAndFollowsItsDevice) {
  EXPECT_NE(add_sample_site(book, "127.0.0.1:2121", "secret"), "");
  EXPECT_EQ(add_sample_site(book, "127.0.0.1:2121", "secret"), "");
  EXPECT_NE(add_sample_site(book, "127.0.0.1:2122", "secret"), "");
  ASSERT_EQ(book.list().size(), 1U);
  EXPECT_EQ(title_of(book.list()[0]), "USA_Office - 101");
  EXPECT_EQ(book.list()[0].lan, "127.0.0.1:2122");
}

}  // namespace
}  // namespace qvrcom::sitebook
