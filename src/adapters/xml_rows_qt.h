#pragma once

#include "platform/xml_rows.h"

namespace qvrcom::adapters {

// Reads the schema-and-rows form (docs/formats/rows-xml.md). Entities are never expanded from a document
// type.
class QtXmlRows : public platform::XmlRows {
 public:
  // At most 64 MiB, 1,000 columns and 1,000,000 rows.
  base::Rows load(std::string_view xml) const override;
};

}  // namespace qvrcom::adapters
