#include "base/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <system_error>

#include "base/characters.h"
#include "base/numericfault.h"

namespace spectrane {
namespace {

constexpr int kSignificantDigits = 15;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsPlace(char c) {
  return c == '0' || c == '#';
}

/// A value as the decimal 0.d1d2d3... times 10 to the power of `pointAt`. No digits: zero.
struct Decimal {
  std::string Digits;
  int PointAt = 0;
};

/// The magnitude of a finite value, to 15 significant digits, without zeros at the right.
Decimal ToDecimal(double value) {
  std::array<char, 40> buffer{};
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(value),
                                     std::chars_format::scientific, kSignificantDigits - 1);
  const std::string_view text(buffer.data(), static_cast<std::size_t>(written.ptr - buffer.data()));
  const std::size_t e = text.find('e');
  Decimal decimal;
  decimal.Digits = std::string(text.substr(0, 1)).append(text.substr(2, e - 2));
  std::string_view exponent = text.substr(e + 1);
  if (exponent.front() == '+') exponent.remove_prefix(1);
  std::from_chars(exponent.data(), exponent.data() + exponent.size(), decimal.PointAt);
  ++decimal.PointAt;
  decimal.Digits.erase(decimal.Digits.find_last_not_of('0') + 1);
  return decimal;
}

/// Rounds half away from zero to `places` decimals.
void RoundTo(Decimal& decimal, std::ptrdiff_t places) {
  const std::ptrdiff_t kept = decimal.PointAt + places;
  const auto count = static_cast<std::ptrdiff_t>(decimal.Digits.size());
  if (kept >= count) return;
  if (kept < 0) {
    decimal.Digits.clear();
    return;
  }
  const bool up = decimal.Digits[static_cast<std::size_t>(kept)] >= '5';
  decimal.Digits.resize(static_cast<std::size_t>(kept));
  if (up) {
    while (!decimal.Digits.empty() && decimal.Digits.back() == '9') decimal.Digits.pop_back();
    if (decimal.Digits.empty()) {
      decimal.Digits = "1";
      ++decimal.PointAt;
    } else {
      ++decimal.Digits.back();
    }
  }
  decimal.Digits.erase(decimal.Digits.find_last_not_of('0') + 1);
}

std::string WholePart(const Decimal& decimal) {
  if (decimal.Digits.empty() || decimal.PointAt <= 0) return {};
  std::string whole = decimal.Digits;
  whole.resize(static_cast<std::size_t>(decimal.PointAt), '0');
  return whole;
}

/// Everything behind the point, as far as it is not zero.
std::string FractionPart(const Decimal& decimal) {
  if (decimal.Digits.empty()) return {};
  if (decimal.PointAt <= 0)
    return std::string(static_cast<std::size_t>(-decimal.PointAt), '0') + decimal.Digits;
  const auto point = static_cast<std::size_t>(decimal.PointAt);
  return point < decimal.Digits.size() ? decimal.Digits.substr(point) : std::string();
}

/// The part of a pattern in front of the point: places take digits from the right, the first place takes all
/// that are left over.
std::string FillWhole(std::string_view pattern, std::string_view digits) {
  const auto places = static_cast<std::size_t>(std::count_if(pattern.begin(), pattern.end(), IsPlace));
  const std::size_t firstZero = std::min(pattern.find('0'), pattern.size());
  std::string text;
  std::size_t place = 0;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (!IsPlace(pattern[i])) {
      text += pattern[i];
      continue;
    }
    const std::size_t fromRight = places - place;
    if (place == 0 && digits.size() > places) text += digits.substr(0, digits.size() - places);
    if (fromRight <= digits.size()) {
      text += digits[digits.size() - fromRight];
    } else if (i >= firstZero) {
      text += '0';
    }
    ++place;
  }
  if (places == 0) text += digits;
  return text;
}

/// The part of a pattern behind the point.
std::string FillFraction(std::string_view pattern, std::string_view digits) {
  const std::size_t lastZero = pattern.rfind('0');
  std::string text;
  std::size_t place = 0;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (!IsPlace(pattern[i])) {
      text += pattern[i];
      continue;
    }
    if (place < digits.size()) {
      text += digits[place];
    } else if (lastZero != std::string_view::npos && i <= lastZero) {
      text += '0';
    }
    ++place;
  }
  return text;
}

struct ScannedNumber {
  bool Found = false;
  double Value = 0.0;
  bool Overflow = false;
  std::size_t End = 0;  ///< behind the last character that belongs to the number
};

std::size_t SkipDigits(std::string_view text, std::size_t at) {
  while (at < text.size() && IsDigit(text[at])) ++at;
  return at;
}

/// Whether a number without a sign that does not fit a double is too large (and not too small). `mantissa`
/// has digits and a point, `exponent` what follows the "e".
bool IsTooLarge(std::string_view mantissa, std::string_view exponent) {
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  const std::size_t first = mantissa.find_first_of("123456789");
  if (first == std::string_view::npos) return false;
  const auto magnitude = static_cast<long long>(point) - static_cast<long long>(first);
  long long power = 0;
  if (!exponent.empty() && exponent.front() == '+') exponent.remove_prefix(1);
  const auto read = std::from_chars(exponent.data(), exponent.data() + exponent.size(), power);
  if (read.ec == std::errc::result_out_of_range) return exponent.front() != '-';
  return power > -magnitude;
}

/// The longest number at the start of `text` (no blanks in front).
ScannedNumber ScanNumber(std::string_view text) {
  ScannedNumber scanned;
  std::size_t at = 0;
  const bool negative = !text.empty() && text.front() == '-';
  if (negative || (!text.empty() && text.front() == '+')) ++at;
  const std::size_t start = at;
  at = SkipDigits(text, at);
  std::size_t digits = at - start;
  if (at < text.size() && text[at] == '.') {
    const std::size_t behind = SkipDigits(text, at + 1);
    digits += behind - at - 1;
    if (digits > 0) at = behind;
  }
  if (digits == 0) return scanned;
  const std::size_t mantissaEnd = at;
  std::string_view exponent;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    std::size_t power = at + 1;
    if (power < text.size() && (text[power] == '+' || text[power] == '-')) ++power;
    const std::size_t end = SkipDigits(text, power);
    if (end > power) {
      exponent = text.substr(at + 1, end - at - 1);
      at = end;
    }
  }
  scanned.Found = true;
  scanned.End = at;
  const auto read = std::from_chars(text.data() + start, text.data() + at, scanned.Value);
  if (read.ec == std::errc::result_out_of_range) {
    scanned.Value = 0.0;
    scanned.Overflow = IsTooLarge(text.substr(start, mantissaEnd - start), exponent);
  }
  if (negative) scanned.Value = -scanned.Value;
  return scanned;
}

std::string_view TrimBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace

std::string Format(double value, std::string_view pattern) {
  if (!std::isfinite(value)) return "-";
  if (std::none_of(pattern.begin(), pattern.end(), IsPlace)) return std::string(pattern);
  const std::size_t point = pattern.find('.');
  const std::string_view before = pattern.substr(0, point);
  const std::string_view behind =
      point == std::string_view::npos ? std::string_view() : pattern.substr(point + 1);
  Decimal decimal = ToDecimal(value);
  RoundTo(decimal, std::count_if(behind.begin(), behind.end(), IsPlace));

  std::string text;
  if (value < 0.0 && !decimal.Digits.empty()) text += '-';
  text += FillWhole(before, WholePart(decimal));
  if (point != std::string_view::npos) {
    text += '.';
    text += FillFraction(behind, FractionPart(decimal));
  }
  return text;
}

double Val(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  const ScannedNumber scanned = ScanNumber(text);
  if (scanned.Overflow) throw NumericFault("number too large");
  return scanned.Value;
}

std::optional<double> ParseNumber(std::string_view text) {
  text = TrimBlanks(text);
  const ScannedNumber scanned = ScanNumber(text);
  if (!scanned.Found || scanned.End != text.size() || scanned.Overflow) return std::nullopt;
  return scanned.Value;
}

std::int32_t ParseLong(std::string_view text) {
  const std::optional<double> value = ParseNumber(text);
  if (!value) throw NumericFault("not a number");
  return ToLong(*value);
}

std::int32_t ToLong(double value) {
  const double rounded = RoundHalfEven(value);
  if (!(rounded >= std::numeric_limits<std::int32_t>::min() &&
        rounded <= std::numeric_limits<std::int32_t>::max())) {
    throw NumericFault("number outside 32 bits");
  }
  return static_cast<std::int32_t>(rounded);
}

double RoundHalfEven(double value) {
  const double magnitude = std::fabs(value);
  const double below = std::floor(magnitude);
  const double rest = magnitude - below;  // exact; NaN for infinity, which then stays as it is
  const bool up = rest > 0.5 || (rest == 0.5 && std::fmod(below, 2.0) != 0.0);
  return std::copysign(up ? below + 1.0 : below, value);
}

std::string GeneralText(double value) {
  if (!std::isfinite(value)) return {};
  const std::string sign = value < 0.0 ? "-" : " ";
  const Decimal decimal = ToDecimal(value);
  if (decimal.Digits.empty()) return sign + "0";
  if (decimal.PointAt > kSignificantDigits || decimal.PointAt < -4) {
    const int power = decimal.PointAt - 1;
    std::string text = sign + decimal.Digits.substr(0, 1);
    if (decimal.Digits.size() > 1) text += "." + decimal.Digits.substr(1);
    return text + (power < 0 ? "E-" : "E+") + Format(std::abs(power), "00");
  }
  const std::string whole = WholePart(decimal);
  const std::string fraction = FractionPart(decimal);
  return sign + (whole.empty() ? "0" : whole) + (fraction.empty() ? "" : "." + fraction);
}

std::string ShortestText(double value) {
  if (!std::isfinite(value)) return {};
  const double magnitude = std::fabs(value);
  const bool plain = magnitude == 0.0 || (magnitude >= 1e-5 && magnitude < 1e15);
  std::array<char, 64> buffer{};
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                     plain ? std::chars_format::fixed : std::chars_format::scientific);
  return std::string(buffer.data(), written.ptr);
}

}  // namespace spectrane
