#pragma once

#include <functional>
#include <map>
#include <string>

class QWidget;

namespace qvrcom::ui {

// Components of the suite that are windows, created by name. Whoever uses one knows the names of its members
// only: properties are set, methods invoked and signals connected through Qt's meta-object.
class VisualComponents {
 public:
  using Factory = std::function<QWidget*(QWidget* parent)>;

  // A later registration of the same name replaces the earlier one.
  void add(const std::string& name, Factory factory);

  // A new component, owned by `parent`; Fault "Component cannot be created" when the name is unknown.
  QWidget* create(const std::string& name, QWidget* parent) const;

 private:
  std::map<std::string, Factory> factories_;
};

}  // namespace qvrcom::ui
