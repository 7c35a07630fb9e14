#pragma once

#include <string_view>

#include "base/rows.h"

namespace qvrcom::platform {

class XmlRows {
 public:
  virtual ~XmlRows() = default;

  // Loads a table from its schema-and-rows XML form. Fault when the text is not one.
  virtual base::Rows load(std::string_view xml) const = 0;
};

}  // namespace qvrcom::platform
