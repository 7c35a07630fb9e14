#pragma once

#include <string>

#include "base/text.h"
#include "platform/xml_rows.h"

namespace qvrcom::doubles {

// Tables as "COLUMN|value|value": a row a value, a "-" being a null.
struct BarRows : platform::XmlRows {
  base::Rows load(std::string_view text) const override {
    const auto pieces = base::split(text, "|");
    base::Rows rows({std::string(pieces[0])});
    for (std::size_t i = 1; i < pieces.size(); ++i)
      rows.add({pieces[i] == "-" ? base::Field{} : base::Field(pieces[i])});
    return rows;
  }
};

}  // namespace qvrcom::doubles
