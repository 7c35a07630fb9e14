#pragma once

#include <exception>
#include <optional>

#include "base/fault.h"

namespace qvrcom::scheduler {

// Runs `body` and gives the fault that ended it. Here and nowhere else in the scheduler a fault becomes a
// value: nobody sits in front of it, so a fault goes into a result list and a log instead of a box.
template <class Body>
std::optional<base::Fault> fault_of(Body&& body) {
  try {
    body();
  } catch (const base::Fault& fault) {
    return fault;
  } catch (const std::exception& error) {
    return base::Fault(error.what());
  }
  return std::nullopt;
}

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
