#pragma once

#include <string>

#include "base/date_serial.h"
#include "jobs/index_line.h"

namespace qvrcom::scheduler {

enum class Due { kNow, kLater, kRepeating };

// A line is due when its start is not later than its own creation value, or than now; a line with an interval
// or a period is another program's.
Due due(const jobs::IndexLine& line, base::LocalTime now);

// Why a line that is not due is left alone, as a full sentence.
std::string left_alone_sentence(const jobs::IndexLine& line, Due due);

}  // namespace qvrcom::scheduler
