#pragma once

#include <exception>
#include <optional>

#include "base/fault.h"

namespace qvrcom::scheduler {

// Nobody sits in front of the scheduler: a fault goes into a result list and a log instead of a box.
using base::fault_of;

// Likewise for one kind of fault; every other passes.
template <class Kind, class Body>
std::optional<Kind> fault_of_kind(Body&& body) {
  try {
    body();
  } catch (const Kind& fault) {
    return fault;
  }
  return std::nullopt;
}

}  // namespace qvrcom::scheduler
