#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace qvrcom::cli {

// Partition numbers from a text such as "3", "1-8" or "1,4,7-9": each number is 1 to 64, in the order given,
// one that comes again counts once. Nothing when the text is none.
std::optional<std::vector<int>> parse_partitions(std::string_view text);

}  // namespace qvrcom::cli
