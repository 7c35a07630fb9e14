#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "sitebook/site_book.h"

namespace qvrcom::sitebook {

enum class AccessCodes { kIncluded, kLeftOut };

// The sites as CSV: a header row of "site-id" and the column keys, CR LF line ends. Nulls and empty texts are
// both empty fields. Left-out access codes have no column. docs/formats/database.md describes it.
std::string export_csv(const std::vector<SiteRecord>& sites, AccessCodes codes);

struct ImportProblem {
  std::size_t line = 0;  // where the row starts, from 1
  std::string reason;    // a sentence
};

struct ImportResult {
  std::size_t added = 0;                // sites
  std::size_t changed = 0;              // sites of the book
  std::vector<ImportProblem> problems;  // when there are any, the book stays as it was
};

// Brings the rows into the book: all of them or, when one cannot be, none. A row with the identifier of a
// site of the book changes that site; so does one without identifier that has the "site-id" of a site it does
// not differ from in name and identifier. Any other row is a new site. The header names the columns in any
// order; an empty field is a null, and a column that is not named stays as it is (a null in a new site).
ImportResult import_csv(SiteBook& book, std::string_view text);

// What that would do to a book of these sites.
ImportResult try_csv(const std::vector<SiteRecord>& stored, std::string_view text);

}  // namespace qvrcom::sitebook
