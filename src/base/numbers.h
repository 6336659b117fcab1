#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace spectrane {

/// The value by a number pattern of the display formats. The pattern holds digit places `0` (always shown)
/// and `#` (shown when needed) with at most one point; every other character stands in its place as it is ("
/// 0.0", "0.0nm", "0.00 s"). Rounds half away from zero on the 15-significant-digit decimal of the value. A
/// value that rounds to zero has no sign; a sign stands before the literals. The point is the separator
/// everywhere. NaN and infinity give "-".
std::string Format(double value, std::string_view pattern);

/// The number at the head of a text: blanks, sign, digits, point, exponent; stops at the first character that
/// cannot belong to it. An empty or non-numeric text gives 0. Throws NumericFault when the number does not
/// fit a double.
double Val(std::string_view text);

/// The whole text as a finite number, blanks around it allowed; nothing otherwise. The one strict number
/// parser: settings, arguments, edit fields. No locale, no hexadecimal, no "nan" or "inf".
std::optional<double> ParseNumber(std::string_view text);

/// The whole text as a 32-bit integer; a decimal is rounded half to even. Throws NumericFault when the text
/// is no number or the value does not fit.
std::int32_t ParseLong(std::string_view text);

/// Rounds half to even. Throws NumericFault for NaN and for values outside 32 bits.
std::int32_t ToLong(double value);

/// Rounds half to even; no range.
double RoundHalfEven(double value);

/// The general format: up to 15 significant digits, no trailing zeros, a point as separator, and a leading
/// blank in the place of the sign of a value that is not negative (" 546.5", " 546", "-0.25").
/// From 1E+15 up and below 0.00001 with an exponent; NaN and infinity give "".
std::string GeneralText(double value);

/// The shortest decimal that reads back as the same value ("0.1", "546", "1e-300"); NaN and infinity give "".
std::string ShortestText(double value);

}  // namespace spectrane
