#include "images/component_answer.h"

#include <span>

namespace qvrcom::images {

std::string answer_of(platform::Component& component, std::string_view operation,
                      std::initializer_list<std::string> arguments) {
  return component.call(operation, std::span(arguments.begin(), arguments.size())).value_or("");
}

void show_answer(platform::UserInterface& ui, const std::string& answer, const std::string& component,
                 const std::string& file_name) {
  ui.show({.text = answer, .detail = component + " did not decode " + file_name + ".", .is_fault = true});
}

}  // namespace qvrcom::images
