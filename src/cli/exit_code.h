#pragma once

namespace qvrcom::cli {

// How the program ends, for scripts.
enum class ExitCode {
  kDone = 0,
  kFailed = 1,   // refused, failed or cancelled
  kUsage = 2,    // the command line itself is wrong
  kMissing = 3,  // no set-up on this machine, or no scheduler
};

// The one of two parts' codes that the whole ends with: done only when both are.
inline ExitCode worse(ExitCode left, ExitCode right) {
  return left < right ? right : left;
}

}  // namespace qvrcom::cli
