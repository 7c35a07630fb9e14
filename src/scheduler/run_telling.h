#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "base/fault.h"
#include "scheduler/result_lists.h"

namespace qvrcom::scheduler {

// Something a session did or begins to do.
struct RunEvent {
  std::string text;        // a full sentence for the log; "" when there is nothing to tell
  std::string step;        // what is begun, "Fetching allstats.csv"; "" when nothing is
  std::uint64_t hint = 0;  // the expected size of that transfer, 0 when nobody said
};

struct RunResult {
  Ending ending = Ending::kCompleted;
  std::string reason;  // a full sentence, "" when it was completed
};

// One line of readable characters is what is left of a text that a device may have said.
std::string readable(std::string text);

// What a session tells of itself.
class RunTelling {
 public:
  explicit RunTelling(const std::function<void(RunEvent)>& tell) : tell_(tell) {}

  void begin(const std::string& step, std::uint64_t hint = 0) const { tell_({{}, readable(step), hint}); }
  void done(const std::string& sentence) const { tell_({readable(sentence), {}, 0}); }
  // A sentence of any length, made of texts that are readable already.
  void note(const std::string& sentence) const { tell_({sentence, {}, 0}); }

  // `fault` as a full sentence; a detail that is one already stands behind.
  static std::string reason(const base::Fault& fault);

  // How a session ended that this fault ended, or none.
  static RunResult report(const std::optional<base::Fault>& fault, bool cancelled);

 private:
  const std::function<void(RunEvent)>& tell_;
};

}  // namespace qvrcom::scheduler
