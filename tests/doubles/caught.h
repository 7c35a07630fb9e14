#pragma once

#include "base/fault.h"

namespace qvrcom::doubles {

// What the body throws; a fault without texts when it throws none.
template <class Body>
base::Fault caught(Body body) {
  try {
    body();
  } catch (const base::Fault& fault) {
    return fault;
  }
  return base::Fault({});
}

template <class Body>
std::string fault_of(Body body) {
  return caught(body).description();
}

// "description: detail"
template <class Body>
std::string whole_fault_of(Body body) {
  const base::Fault fault = caught(body);
  return fault.description().empty() ? "" : fault.description() + ": " + fault.detail();
}

}  // namespace qvrcom::doubles
