#include "ui/visual_components.h"

#include <utility>

#include "base/fault.h"

namespace qvrcom::ui {

void VisualComponents::add(const std::string& name, Factory factory) {
  factories_.insert_or_assign(name, std::move(factory));
}

QWidget* VisualComponents::create(const std::string& name, QWidget* parent) const {
  const auto found = factories_.find(name);
  if (found == factories_.end()) {
    throw base::Fault("Component cannot be created",
                      "No component is registered as \"" + name + "\". Install the plug-in that brings it.");
  }
  return found->second(parent);
}

}  // namespace qvrcom::ui
