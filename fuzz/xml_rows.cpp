// Any bytes as a component's answer: rows or a fault, and every row has a field for every column.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "adapters/xml_rows_qt.h"
#include "base/fault.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    const qvrcom::base::Rows rows = qvrcom::adapters::QtXmlRows().load(text);
    for (const qvrcom::base::Row row : rows) {
      for (const std::string& column : rows.columns())
        row.text(column);
    }
  } catch (const qvrcom::base::Fault& fault) {
    if (fault.description() != "Answer is not a table") std::abort();
  }
  return 0;
}
