#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace qvrcom::base {

// A moment of the PC's local time, to the second.
using LocalTime = std::chrono::local_seconds;

LocalTime local_time(int year, unsigned month, unsigned day, int hour = 0, int minute = 0, int second = 0);

// Days since 30 December 1899 00:00, the fraction being the time of day, rounded to ten decimals.
double date_serial(LocalTime moment);

// The moment nearest to a serial, to the second. Serials outside the years 100 to 9999 give nothing.
std::optional<LocalTime> from_date_serial(double serial);

// The shortest decimal that reads back as the same double: never an exponent, "." in every locale.
std::string serial_text(double serial);
std::string serial_text(LocalTime moment);

// "mmmddyyhhmmss": 15 November 2026 12:10:05 is "Nov1526121005". Thirteen characters, English month.
std::string job_name_stamp(LocalTime moment);

// The moment of a text that begins with such a stamp, in this century; nothing when it does not.
std::optional<LocalTime> from_job_name(std::string_view text);

// "dd/mm/yyyy hh:mm:ss" with a 24-hour clock.
std::string index_stamp(LocalTime moment);

// "YYYY-MM-DD hh:mm:ss" with a 24-hour clock, as people and tables read it.
std::string clock_text(LocalTime moment);

}  // namespace qvrcom::base
