// Any bytes as a component's answer: rows or a fault, and every row has a field for every column.
#include "adapters/xml_rows_qt.h"
#include "base/fault.h"
#include "entry.h"

void fuzz(std::string_view text) {
  try {
    const qvrcom::base::Rows rows = qvrcom::adapters::QtXmlRows().load(text);
    for (const qvrcom::base::Row row : rows) {
      for (const std::string& column : rows.columns())
        row.text(column);
    }
  } catch (const qvrcom::base::Fault& fault) {
    require(fault.description() == "Answer is not a table");
  }
}
