#pragma once

#include <string>
#include <string_view>

#include "base/date_serial.h"

// A log that people read, docs/protocol.md: "NAME.log" in the folder of logs, one a job, and each line a time
// stamp, a blank and a full sentence, CR LF.
namespace qvrcom::protocol {

inline constexpr std::string_view kLogExtension = ".log";

// `logs_folder` ends in a backslash.
std::string log_path(const std::string& logs_folder, std::string_view name);

// With its line end.
std::string log_line(base::LocalTime moment, std::string_view sentence);

// The sentence by which `last_reason` finds why a job did not end well.
std::string reason_sentence(std::string_view reason);

// Why the job failed or was cancelled, as its log tells it last; "" when it does not.
std::string last_reason(std::string_view log);

}  // namespace qvrcom::protocol
