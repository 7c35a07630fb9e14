#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "sitebook/site_book.h"

namespace qvrcom::sitebook {

// The sites as CSV: a header row of "site-id" and the column keys, CR LF line ends. Nulls and empty texts are
// both empty fields. docs/formats/database.md describes it.
std::string export_csv(const std::vector<SiteRecord>& sites);

struct ImportProblem {
  std::size_t line = 0;  // where the row starts, from 1
  std::string reason;    // a sentence
};

struct ImportResult {
  std::size_t added = 0;                // sites
  std::vector<ImportProblem> problems;  // when there are any, nothing was added
};

// Adds the rows as new sites: all of them or, when one cannot be, none. The header names the columns in any
// order; an empty field and a column that is not named are nulls; "site-id" is passed over.
ImportResult import_csv(SiteBook& book, std::string_view text);

}  // namespace qvrcom::sitebook
