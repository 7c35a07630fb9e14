#include "desktop/first_start.h"

#include "environment/names.h"
#include "ui/attempt.h"

namespace qvrcom::desktop {
namespace {

std::string lines_of(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines)
    text += line + "\n";
  return text;
}

bool accepted(platform::UserInterface& ui, const std::string& text, const std::string& detail) {
  return ui.show({.text = text,
                  .title = platform::kSuiteTitle,
                  .icon = platform::Icon::kInformation,
                  .buttons = platform::Buttons::kOkCancel,
                  .detail = detail}) == platform::Button::kOk;
}

bool make_what_is_missing(platform::UserInterface& ui, environment::SetUp& set_up,
                          const environment::MachineFolders& folders) {
  std::vector<std::string> done;
  if (!ui::attempt(ui, "QVRCOM+ cannot be set up.", [&] { done = set_up.run(folders); })) return false;
  ui.show({.text = "QVRCOM+ is set up. Its sites stand on the page \"Sites\".",
           .title = platform::kSuiteTitle,
           .icon = platform::Icon::kInformation,
           .detail = lines_of(done)});
  return true;
}

}  // namespace

bool prepare_machine(const FirstStartParts& parts, environment::SetUp set_up,
                     const environment::MachineFolders& folders) {
  const auto missing = environment::missing_set_up(parts.machine, parts.files);
  if (!missing) {
    // A database that cannot be used is reported by whoever needs it.
    base::fault_of([&] { set_up.run(folders); });
    return true;
  }
  const bool fresh = !parts.machine.special_folder(environment::kCommonAppDataIdentifier);
  if (fresh) {
    return accepted(parts.ui,
                    "QVRCOM+ starts here for the first time. Its folders, its configuration and an empty "
                    "database will be made.",
                    "The folders will lie in " + parts.files.native(folders.application_data) + " and " +
                        parts.files.native(folders.documents) + ".") &&
           make_what_is_missing(parts.ui, set_up, folders);
  }
  if (!missing->can_be_made) {
    parts.ui.show({.text = "QVRCOM+ is not complete on this PC.\n" + missing->text,
                   .title = platform::kSuiteTitle,
                   .icon = platform::Icon::kWarning});
    return true;
  }
  if (accepted(parts.ui,
               "QVRCOM+ is not complete on this PC.\n" + missing->text +
                   "\n\nMake what is missing now? A database that is missing is made empty.",
               "If the missing file lies elsewhere, choose Cancel and put it back first."))
    make_what_is_missing(parts.ui, set_up, folders);
  return true;
}

}  // namespace qvrcom::desktop
