#include "devicefiles/shared_parts.h"

#include <array>

namespace qvrcom::devicefiles {

CountedTime read_counted(const SectionReader& file) {
  CountedTime counted;
  file.one(kCountedSection, "counted time", kCountedLength, [&](ByteReader& record) {
    counted.since = record.moment("counted since");
    counted.until = record.moment("counted until");
  });
  return counted;
}

void write_counted(SectionWriter& file, const CountedTime& counted) {
  file.section(kCountedSection, kCountedLength, std::array{counted},
               [](ByteWriter& record, const CountedTime& one) {
                 record.moment(one.since);
                 record.moment(one.until);
               });
}

std::uint32_t read_partition(const SectionReader& file) {
  if (file.header().partition == 0) file.refuse("It names no partition");
  return file.header().partition;
}

}  // namespace qvrcom::devicefiles
