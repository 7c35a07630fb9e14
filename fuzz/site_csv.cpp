// Any bytes as a list of sites for a book that has some: refused line by line, or rows that add and change
// sites.
#include "sitebook/site_csv.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qvrcom::sitebook;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  std::vector<SiteRecord> stored(2);
  stored[0].site_id = 1;
  stored[0].identifier = "7";
  stored[1].site_id = 2;
  stored[1].name = "A";
  const ImportResult result = try_csv(stored, text);
  const auto lines = static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char byte) { return byte == '\n' || byte == '\r'; }));
  if (!result.problems.empty() && result.added + result.changed != 0) std::abort();
  if (result.changed > stored.size() || result.added > lines) std::abort();
  for (const ImportProblem& problem : result.problems)
    if (problem.line == 0 || problem.line > lines + 1 || problem.reason.empty()) std::abort();
  return 0;
}
