#pragma once

#include <string>

namespace qvrcom::adapters {

// Where this PC keeps the suite's things. Native paths, no slash at the end.
// With QVRCOM_ROOT=DIR in the environment everything lies under DIR; otherwise the XDG base directories and
// the user's documents folder serve.
struct Layout {
  std::string root;              // QVRCOM_ROOT; "" without
  std::string config_folder;     // machine.reg and the settings file
  std::string plugin_folder;     // libraries that bring components; below config_folder
  std::string app_data_folder;   // proposed for identifier 35 by set-up
  std::string documents_folder;  // proposed for identifier 46 by set-up
  std::string run_folder;        // sockets and locks; made, open to the user alone
  std::string runtime_folder;    // for sockets whose path would be too long in run_folder

  // Fault when a path holds a character that a script or an index line cannot carry (";", "^", a backslash,
  // a control character).
  static Layout from_environment();
};

}  // namespace qvrcom::adapters
