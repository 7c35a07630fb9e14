#include "platform/trap.h"

#include "base/text.h"

namespace qvrcom::platform {

void Trap::report(const std::string& procedure, const std::string& description,
                  const std::string& detail) const {
  Message message;
  message.icon = form_.icon;
  message.detail = detail;
  message.is_fault = true;
  if (form_.names_handler) {
    message.title = kSuiteTitle;
    message.text = "Error_Handler: " + procedure + std::string(base::kCrLf) + description;
  } else {
    message.text = procedure;
    message.detail = detail.empty() ? description : description + ": " + detail;
  }
  ui_.show(message);
}

}  // namespace qvrcom::platform
