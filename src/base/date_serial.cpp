#include "base/date_serial.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "base/text.h"

namespace qvrcom::base {
namespace {

using namespace std::chrono;

constexpr local_days kSerialZero{year{1899} / December / 30};
constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kTenDecimals = 10'000'000'000;
constexpr double kLowestSerial = -657434.0;   // 1 January 100
constexpr double kHighestSerial = 2958466.0;  // 1 January 10000, excluded
constexpr std::array<const char*, 12> kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                              "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

struct Civil {
  int year;
  unsigned month, day;
  int hour, minute, second;
};

Civil civil_of(LocalTime moment) {
  const auto midnight = floor<days>(moment);
  const year_month_day date{midnight};
  const hh_mm_ss time{moment - midnight};
  return {static_cast<int>(date.year()),
          static_cast<unsigned>(date.month()),
          static_cast<unsigned>(date.day()),
          static_cast<int>(time.hours().count()),
          static_cast<int>(time.minutes().count()),
          static_cast<int>(time.seconds().count())};
}

}  // namespace

LocalTime local_time(int y, unsigned m, unsigned d, int h, int min, int s) {
  return local_days{year{y} / month{m} / day{d}} + hours{h} + minutes{min} + seconds{s};
}

double date_serial(LocalTime moment) {
  const std::int64_t total = (moment - kSerialZero).count();
  const std::int64_t whole =
      total >= 0 ? total / kSecondsPerDay : -((-total + kSecondsPerDay - 1) / kSecondsPerDay);
  const std::int64_t rest = total - whole * kSecondsPerDay;
  // Integers until the last step: the ten decimals are rounded once, from the exact fraction.
  const std::int64_t decimals = (rest * kTenDecimals + kSecondsPerDay / 2) / kSecondsPerDay;
  return static_cast<double>(whole * kTenDecimals + decimals) / static_cast<double>(kTenDecimals);
}

std::optional<LocalTime> from_date_serial(double serial) {
  if (!(serial >= kLowestSerial && serial < kHighestSerial)) return std::nullopt;
  const double whole = std::floor(serial);
  const auto rest = std::llround((serial - whole) * static_cast<double>(kSecondsPerDay));
  return kSerialZero + days{static_cast<int>(whole)} + seconds{rest};
}

std::string serial_text(double serial) {
  std::array<char, 400> buffer{};  // the longest fixed double has 309 digits before the point
  const auto result =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), serial, std::chars_format::fixed);
  return {buffer.data(), result.ptr};
}

std::string serial_text(LocalTime moment) {
  return serial_text(date_serial(moment));
}

std::string job_name_stamp(LocalTime moment) {
  const Civil c = civil_of(moment);
  std::array<char, 80> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%s%02u%02d%02d%02d%02d", kMonths[c.month - 1], c.day,
                c.year % 100, c.hour, c.minute, c.second);
  return buffer.data();
}

std::optional<LocalTime> from_job_name(std::string_view text) {
  const auto month = std::find(kMonths.begin(), kMonths.end(), text.substr(0, 3));
  if (month == kMonths.end() || text.size() < 13) return std::nullopt;
  std::array<int, 5> numbers{};  // day, year, hour, minute, second
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const char tens = text[3 + 2 * i], ones = text[4 + 2 * i];
    if (tens < '0' || tens > '9' || ones < '0' || ones > '9') return std::nullopt;
    numbers[i] = (tens - '0') * 10 + (ones - '0');
  }
  const auto [day_, year_, hour_, minute_, second_] = numbers;
  const year_month_day date{year{2000 + year_},
                            std::chrono::month(static_cast<unsigned>(month - kMonths.begin()) + 1),
                            day{static_cast<unsigned>(day_)}};
  if (!date.ok()) return std::nullopt;
  return local_days(date) + hours(hour_) + minutes(minute_) + seconds(second_);
}

std::string index_stamp(LocalTime moment) {
  const Civil c = civil_of(moment);
  std::array<char, 80> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%02u/%02u/%04d %02d:%02d:%02d", c.day, c.month, c.year, c.hour,
                c.minute, c.second);
  return buffer.data();
}

std::string clock_text(LocalTime moment) {
  const Civil c = civil_of(moment);
  std::array<char, 80> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%04d-%02u-%02u %02d:%02d:%02d", c.year, c.month, c.day, c.hour,
                c.minute, c.second);
  return buffer.data();
}

}  // namespace qvrcom::base
