#pragma once

#include <string>

#include "base/rows.h"

namespace qvrcom::components {

// The schema-and-rows XML form of a table; docs/formats/rows-xml.md describes it. A null is an absent
// attribute. Characters that XML cannot carry are left out.
std::string rows_xml(const base::Rows& rows);

}  // namespace qvrcom::components
