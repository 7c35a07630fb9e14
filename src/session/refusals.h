#pragma once

#include <optional>
#include <string>

#include "base/session_values.h"
#include "platform/message.h"

namespace qvrcom::session {

// "Site : " and "FW Version : " with the site's values, a line each, no line end behind the second.
std::string site_block(const base::SiteValues& site);

// The box for a verdict of the firmware rules that stops a site; nothing for every other one, an empty one
// too.
std::optional<platform::Message> refusal_of(const std::string& verdict, const base::SiteValues& site);

}  // namespace qvrcom::session
