#include "protocol/job_log.h"

#include <algorithm>

#include "base/text.h"

namespace qvrcom::protocol {
namespace {

constexpr std::string_view kReasonMark = "Reason: ";
constexpr std::size_t kStampWidth = 20;  // stamp and blank

}  // namespace

std::string log_path(const std::string& logs_folder, std::string_view name) {
  return logs_folder + std::string(name) + std::string(kLogExtension);
}

std::string log_line(base::LocalTime moment, std::string_view sentence) {
  return base::clock_text(moment).append(" ").append(sentence).append(base::kCrLf);
}

std::string reason_sentence(std::string_view reason) {
  return std::string(kReasonMark).append(reason);
}

std::string last_reason(std::string_view log) {
  std::string reason;
  for (std::string_view line : base::lines_of(log)) {
    line.remove_prefix(std::min(line.size(), kStampWidth));
    if (line.starts_with(kReasonMark)) reason = line.substr(kReasonMark.size());
  }
  return reason;
}

}  // namespace qvrcom::protocol
