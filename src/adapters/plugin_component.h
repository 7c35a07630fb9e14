#pragma once

#include <qvrcom/component_plugin.h>

#include <exception>
#include <memory>
#include <string>

#include "base/fault.h"
#include "platform/components.h"

namespace qvrcom::adapters {

// A component of a plug-in library as one of the suite's. `library` is the file name that faults tell.
// Fault when the plug-in cannot make one; a call's Fault when it fails, has no such operation, lets an
// exception out, or answers with more than 16 MiB or with something else than UTF-8.
std::unique_ptr<platform::Component> make_plugin_component(const qvrcom_component& offer,
                                                           const std::string& library);

// Runs a piece of a plug-in: an exception that leaves it becomes the Fault `description` with `where` and the
// exception's own text as detail. Nothing that a plug-in throws goes any further.
template <class Body>
auto guard_plugin(const std::string& description, const std::string& where, Body body) {
  try {
    return body();
  } catch (const std::exception& error) {
    throw base::Fault(description, where + ": " + error.what());
  } catch (...) {
    throw base::Fault(description, where + ": an exception of its own kind.");
  }
}

}  // namespace qvrcom::adapters
