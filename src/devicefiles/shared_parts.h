#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "devicefiles/line_statistics.h"
#include "devicefiles/sections.h"

// What the readers of several files share.
namespace qvrcom::devicefiles {

inline constexpr std::uint32_t kCountedSection = 1;
inline constexpr std::size_t kCountedLength = 8;

CountedTime read_counted(const SectionReader& file);
void write_counted(SectionWriter& file, const CountedTime& counted);

// The partition of the header; Fault for a file of the whole device.
std::uint32_t read_partition(const SectionReader& file);

// Fault when two values have the same key; `what` names the values in the user's words.
template <class Values, class Key>
void require_unique(const SectionReader& file, const Values& values, const std::string& what, Key key) {
  std::set<decltype(key(values.front()))> seen;
  for (const auto& value : values) {
    if (!seen.insert(key(value)).second) file.refuse("One of its " + what + " stands in it twice");
  }
}

}  // namespace qvrcom::devicefiles
