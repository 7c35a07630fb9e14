#include "session/refusals.h"

#include <algorithm>

#include "base/text.h"
#include "siterules/firmware_rules.h"

namespace qvrcom::session {
namespace {

struct Refusal {
  const char* verdict;
  const char* warning;
  platform::Icon icon;
};

constexpr Refusal kRefusals[] = {
    {siterules::kNoFirmwareVersion,
     "Warning: The QVR+/RDN version is unknown. Please retrieve QVR+/RDN system information.\r\n\r\n"
     "Administration -> System -> System Commands -> Retrieve QVR+/RDN System Information",
     platform::Icon::kWarning},
    {siterules::kNotCompatible,
     "This version of software is incompatible with the QVR+/RDN firmware load. Please upgrade your software "
     "or contact Corbelin for technical assistance. Click About on the main menu to find Corbelin's contact "
     "information.",
     platform::Icon::kError},
};

}  // namespace

std::string site_block(const base::SiteValues& site) {
  return "Site : " + site.SiteName + std::string(base::kCrLf) + "FW Version : " + site.FirmwareVersion;
}

std::optional<platform::Message> refusal_of(const std::string& verdict, const base::SiteValues& site) {
  const auto refusal = std::find_if(std::begin(kRefusals), std::end(kRefusals),
                                    [&](const Refusal& candidate) { return candidate.verdict == verdict; });
  if (refusal == std::end(kRefusals)) return std::nullopt;
  return platform::Message{.text = site_block(site) + std::string(base::kCrLf) + refusal->warning,
                           .title = platform::kSuiteTitle,
                           .icon = refusal->icon};
}

}  // namespace qvrcom::session
