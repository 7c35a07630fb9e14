#include "base/number.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "base/fault.h"
#include "base/text.h"

namespace qvrcom::base {
namespace {

std::string quoted(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

// Digits at the front of `text`, which is shortened by them.
std::string_view take_digits(std::string_view& text) {
  std::size_t count = 0;
  while (count < text.size() && is_digit(text[count]))
    ++count;
  const std::string_view digits = text.substr(0, count);
  text.remove_prefix(count);
  return digits;
}

bool rounds_up(std::string_view fraction, bool whole_is_odd) {
  if (fraction.empty() || fraction[0] < '5') return false;
  const bool exactly_half =
      fraction[0] == '5' && fraction.find_first_not_of('0', 1) == std::string_view::npos;
  return !exactly_half || whole_is_odd;
}

std::int64_t to_integer(std::string_view given, std::int64_t low, std::int64_t high) {
  std::string_view text = trim(given);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const std::string_view whole = take_digits(text);
  std::string_view fraction;
  if (text.starts_with('.')) {
    text.remove_prefix(1);
    fraction = take_digits(text);
  }
  if (!text.empty() || (whole.empty() && fraction.empty())) {
    throw Fault(kTypeMismatch, quoted(given) + " is not a number. Enter digits only.");
  }
  const std::int64_t beyond = high + 2;
  std::int64_t value = 0;
  for (const char c : whole)
    value = std::min<std::int64_t>(value * 10 + (c - '0'), beyond);
  if (rounds_up(fraction, value % 2 != 0)) ++value;
  if (negative) value = -value;
  if (value < low || value > high) {
    throw Fault(kOverflow, quoted(given) + " is not between " + std::to_string(low) + " and " +
                               std::to_string(high) + ".");
  }
  return value;
}

template <class Integer>
Integer to(std::string_view text) {
  using Limits = std::numeric_limits<Integer>;
  return static_cast<Integer>(to_integer(text, Limits::min(), Limits::max()));
}

}  // namespace

std::int16_t to_int16(std::string_view text) {
  return to<std::int16_t>(text);
}
std::int32_t to_int32(std::string_view text) {
  return to<std::int32_t>(text);
}

std::optional<double> parse_number(std::string_view text) {
  text = trim(text);
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc{} || result.ptr != text.data() + text.size() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

}  // namespace qvrcom::base
