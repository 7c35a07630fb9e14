#include "devicefiles/byte_writer.h"

#include "base/fault.h"
#include "devicefiles/device_epoch.h"

namespace qvrcom::devicefiles {

void ByteWriter::number(std::string_view field, std::uint32_t value, std::size_t width) {
  if (width < 4 && value >> (8 * width) != 0) {
    throw base::Fault(base::kOverflow,
                      "The field \"" + std::string(field) + "\" cannot hold " + std::to_string(value) + ".");
  }
  for (std::size_t i = width; i-- > 0;)
    bytes_ += static_cast<char>((value >> (8 * i)) & 0xFFU);
}

void ByteWriter::text(std::string_view field, std::string_view value, std::size_t width) {
  if (value.size() > width) {
    throw base::Fault(base::kOverflow, "The field \"" + std::string(field) + "\" holds " +
                                           std::to_string(width) + " bytes, not \"" + std::string(value) +
                                           "\".");
  }
  bytes_ += value;
  bytes_.append(width - value.size(), '\0');
}

void ByteWriter::moment(base::LocalTime value) {
  u32(device_seconds(value));
}

}  // namespace qvrcom::devicefiles
