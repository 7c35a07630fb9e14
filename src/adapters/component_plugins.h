#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/components.h"

namespace qvrcom::adapters {

// A component that a plug-in library offers.
struct OfferedComponent {
  std::string name;
  std::string library;  // the library's file name
  std::function<std::unique_ptr<platform::Component>()> create;
};

struct ComponentPlugins {
  std::vector<OfferedComponent> components;  // each name once
  std::vector<std::string> problems;         // one sentence for the user each, naming the library
};

// Loads the libraries of a native folder ("*.so"), by file name. A folder that is not there holds none; a
// library that cannot be used is a problem and offers nothing; a component that is offered twice is a problem
// and not offered at all. A library is loaded only when file and folder belong to the user or to root and
// nobody else may write to them. It stays loaded until the program ends.
ComponentPlugins load_component_plugins(const std::string& folder);

}  // namespace qvrcom::adapters
