#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/text.h"

namespace qvrcom::jobs {

// Index lines as keys of an unordered container: letter case tells no two apart, and a view is looked up as
// it is.
struct LineHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view line) const {
    std::uint64_t hash = 14695981039346656037ULL;  // FNV-1a
    for (const char c : line) {
      const bool lower = c >= 'a' && c <= 'z';
      hash = (hash ^ static_cast<unsigned char>(lower ? c - 'a' + 'A' : c)) * 1099511628211ULL;
    }
    return hash;
  }
};

struct LineEqual {
  using is_transparent = void;
  bool operator()(std::string_view left, std::string_view right) const {
    return base::equals_ignoring_case(left, right);
  }
};

}  // namespace qvrcom::jobs
