// Any bytes as a list of sites for a book that has some: refused line by line, or rows that add and change
// sites.
#include "sitebook/site_csv.h"

#include <algorithm>

#include "entry.h"

void fuzz(std::string_view text) {
  using namespace qvrcom::sitebook;
  std::vector<SiteRecord> stored(2);
  stored[0].site_id = 1;
  stored[0].identifier = "7";
  stored[1].site_id = 2;
  stored[1].name = "A";
  const ImportResult result = try_csv(stored, text);
  const auto lines = static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char byte) { return byte == '\n' || byte == '\r'; }));
  require(result.problems.empty() || result.added + result.changed == 0);
  require(result.changed <= stored.size() && result.added <= lines);
  for (const ImportProblem& problem : result.problems)
    require(problem.line > 0 && problem.line <= lines + 1 && !problem.reason.empty());
}
