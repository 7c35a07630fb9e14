#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/date_serial.h"

// The device file "linestat" of a partition; docs/formats/linestat.md.
namespace qvrcom::devicefiles {

// Since when and until when counters count, by the device's clock.
struct CountedTime {
  base::LocalTime since{};
  base::LocalTime until{};

  bool operator==(const CountedTime&) const = default;
};

// The calls of one line. Times are seconds.
struct LineCalls {
  std::uint32_t line = 1;  // 1 to 999
  std::uint32_t calls = 0;
  std::uint32_t answered = 0;
  std::uint32_t busy = 0;
  std::uint32_t no_answer = 0;
  std::uint32_t seconds = 0;  // in use, all calls together
  std::uint32_t longest = 0;  // of one call

  bool operator==(const LineCalls&) const = default;
};

struct LineTransfers {
  std::uint32_t line = 1;       // 1 to 999
  std::uint32_t transfers = 0;  // calls that were handed on

  bool operator==(const LineTransfers&) const = default;
};

// How often and how long exactly so many lines were active at the same time.
struct LinesActive {
  std::uint32_t lines = 1;  // 1 to 999
  std::uint32_t times = 0;
  std::uint32_t seconds = 0;

  bool operator==(const LinesActive&) const = default;
};

// Every line and every number of lines stands once.
struct LineStatistics {
  std::uint32_t partition = 1;  // 1 to 64
  CountedTime counted;
  std::vector<LineCalls> calls;
  std::vector<LineTransfers> transfers;
  std::vector<LinesActive> active;

  bool operator==(const LineStatistics&) const = default;
};

// `bytes` is the whole file. Fault when it is none of this suite, of another version, or damaged.
LineStatistics read_line_statistics(std::string_view bytes);

}  // namespace qvrcom::devicefiles
