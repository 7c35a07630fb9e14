#pragma once

#include <QString>
#include <array>
#include <string>
#include <vector>

#include "base/session_values.h"
#include "devicefiles/system_information.h"
#include "requests/system_request.h"

// What a device answers, as the desktop writes it: lines, no line end behind the last.
namespace qvrcom::desktop {

QString information_text(const devicefiles::SystemInformation& information);
QString partition_text(int partition, const std::array<base::TimeRecord, 2>& times);
QString files_text(const std::vector<session::PartitionFile>& files);

// Bytes that nobody here can read, sixteen on a line, under a line that says so.
QString unread_text(const std::string& bytes);

// "Get Log File: Completed", or how else it ended.
QString outcome_line(const std::string& operation, const requests::SystemAnswer& answer);

// "Get Log File: not done (Error)"
QString outcome_line(const std::string& operation, requests::RequestResult result, const std::string& status);

}  // namespace qvrcom::desktop
