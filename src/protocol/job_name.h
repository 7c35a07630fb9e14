#pragma once

#include <string>
#include <string_view>

#include "base/date_serial.h"

namespace qvrcom::protocol {

inline constexpr std::string_view kScriptExtension = ".scr";

// Time stamp and suffix: 15 November 2026 12:10:05 with the suffix "000" is "Nov1526121005000".
std::string job_name(base::LocalTime moment, std::string_view suffix);

// The file of a job that bears its name: folder (no backslash at its end) + "\\" + the folder's name +
// extension.
std::string job_file(const std::string& folder, std::string_view extension);
inline std::string script_path(const std::string& folder) {
  return job_file(folder, kScriptExtension);
}

// True for letters, digits, "-" and "_" alone, 1 to 64 of them: a name that stays inside the scheduler folder
// whatever it is joined to.
bool is_job_name(std::string_view name);

// The name of the job whose script this is: the folder that holds the file, when the file bears its name
// ("...\Nov1526121005000\Nov1526121005000.scr"). Empty for any other path.
std::string_view job_of_script(std::string_view script_path);

}  // namespace qvrcom::protocol
