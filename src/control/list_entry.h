#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qvrcom::control {

// One entry of a drop-down list.
struct ListEntry {
  std::string text;
  std::int32_t item_data = 0;
  bool operator==(const ListEntry&) const = default;
};

using ListEntries = std::vector<ListEntry>;

}  // namespace qvrcom::control
