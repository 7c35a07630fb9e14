#pragma once

#include <exception>
#include <string>
#include <type_traits>
#include <utility>

#include "base/fault.h"
#include "platform/message.h"
#include "platform/user_interface.h"

namespace qvrcom::platform {

// How a group of procedures reports its faults.
struct TrapForm {
  Icon icon = Icon::kNone;
  bool names_handler = true;  // "Error_Handler: " + procedure + CR LF + description under the suite's title;
                              // otherwise the procedure's own text alone, without a title
};

inline constexpr TrapForm kRulesTrap{};
inline constexpr TrapForm kImagesTrap{Icon::kError, true};
inline constexpr TrapForm kControlTrap{Icon::kNone, false};

// The one place where a procedure's faults are caught:
//   return trap_("Write_Script", [&] { ... });
// After a fault the box is shown and the result is the empty one of its type.
class Trap {
 public:
  explicit Trap(UserInterface& ui, TrapForm form = kRulesTrap) : ui_(ui), form_(form) {}

  template <class Body>
  auto operator()(const std::string& procedure, Body&& body) const -> std::invoke_result_t<Body> {
    using Result = std::invoke_result_t<Body>;
    try {
      return std::forward<Body>(body)();
    } catch (const base::Fault& fault) {
      report(procedure, fault.description(), fault.detail());
    } catch (const std::exception& error) {
      report(procedure, error.what(), {});
    }
    if constexpr (!std::is_void_v<Result>) return Result{};
  }

 private:
  void report(const std::string& procedure, const std::string& description, const std::string& detail) const;

  UserInterface& ui_;
  TrapForm form_;
};

}  // namespace qvrcom::platform
