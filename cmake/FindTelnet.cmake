# libtelnet as Telnet::Telnet; its package has no CMake file.
find_path(TELNET_INCLUDE_DIR libtelnet.h)
find_library(TELNET_LIBRARY telnet)
mark_as_advanced(TELNET_INCLUDE_DIR TELNET_LIBRARY)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Telnet REQUIRED_VARS TELNET_LIBRARY TELNET_INCLUDE_DIR)
if(Telnet_FOUND AND NOT TARGET Telnet::Telnet)
  add_library(Telnet::Telnet UNKNOWN IMPORTED)
  set_target_properties(Telnet::Telnet PROPERTIES
    IMPORTED_LOCATION "${TELNET_LIBRARY}" INTERFACE_INCLUDE_DIRECTORIES "${TELNET_INCLUDE_DIR}")
endif()
