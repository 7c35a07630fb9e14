#include "cli/partition_list.h"

#include <algorithm>
#include <charconv>

#include "base/text.h"

namespace qvrcom::cli {
namespace {

constexpr int kFirst = 1;
constexpr int kLast = 64;

std::optional<int> parse_number(std::string_view text) {
  int number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end || number < kFirst || number > kLast) return std::nullopt;
  return number;
}

bool add_range(std::vector<int>& partitions, std::string_view text) {
  const std::size_t dash = text.find('-');
  const std::optional<int> first = parse_number(text.substr(0, dash));
  const std::optional<int> last = dash == text.npos ? first : parse_number(text.substr(dash + 1));
  if (!first || !last || *first > *last) return false;
  for (int number = *first; number <= *last; ++number)
    if (std::find(partitions.begin(), partitions.end(), number) == partitions.end())
      partitions.push_back(number);
  return true;
}

}  // namespace

std::optional<std::vector<int>> parse_partitions(std::string_view text) {
  std::vector<int> partitions;
  for (const std::string_view piece : base::split(text, ","))
    if (!add_range(partitions, base::trim(piece))) return std::nullopt;
  return partitions;
}

}  // namespace qvrcom::cli
