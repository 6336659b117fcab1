#pragma once

#include <optional>
#include <string>

namespace spectrane {

/// A date and a time of day as a wall clock shows them, local time.
struct CivilTime {
  int Year = 1899;
  int Month = 12;
  int Day = 30;
  int Hour = 0;
  int Minute = 0;
  int Second = 0;
  int Millisecond = 0;
  bool operator==(const CivilTime&) const = default;
};

/// The date serial: days since 1899-12-30 00:00, the time as a fraction of the day. Fields beyond their range
/// carry over (day 32, minute -1); the month must lie in 1 to 12.
double SerialFromCivil(const CivilTime& civil);
/// The way back, to the nearest millisecond. Nothing for a serial outside the years 100 to 9999.
std::optional<CivilTime> CivilFromSerial(double serial);

/// The serial of this moment.
double Now();

/// "yyyy-MM-dd  hh:mm:ss" with two blanks, hours 0 to 23; empty for a serial outside the years 100 to 9999.
std::string DateTimeText(double serial);

}  // namespace spectrane
