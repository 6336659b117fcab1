#include "acquire/plan.h"

#include <cmath>

#include "base/numbers.h"

namespace spectrane {
namespace {

/// 8N1 at 115200 baud: ten bits a byte.
constexpr double kByteSeconds = 10.0 / 115200.0;
constexpr double kDriveNanometresASecond = 100.0;
constexpr double kDriveSettles = 0.15;
constexpr double kRezero = 1.5;
constexpr double kGain = 0.06;
constexpr double kReadingBegins = 0.003;
constexpr double kSample = 0.003;
constexpr double kCellStep = 1.0;
/// "swl  546.5" twice, with what goes around it; so many bytes have the others too, give or take a few.
constexpr double kOrderBytes = 25;
/// One data line: five digits and its end.
constexpr double kLineBytes = 7;
constexpr std::int32_t kTableReading = 10;
constexpr std::int32_t kTimeScanReading = 20;

/// The drive goes through the wavelengths of a table and back to the first one for the next sample.
double RoundTripSeconds(const std::vector<double>& wavelengths) {
  double seconds = 0;
  for (std::size_t i = 0; i < wavelengths.size(); ++i) {
    const double from = wavelengths[i == 0 ? wavelengths.size() - 1 : i - 1];
    seconds += MoveSeconds(std::abs(wavelengths[i] - from));
  }
  return seconds;
}

std::string PassText(const PlannedPass& pass) {
  return pass.Name + " " + std::to_string(pass.Points) + " x " + DurationText(pass.SecondsAPoint) + " = " +
         DurationText(pass.Seconds());
}

std::string TwoDigits(std::int64_t value) {
  return (value < 10 ? "0" : "") + std::to_string(value);
}

}  // namespace

double MoveSeconds(double nm) {
  return kDriveSettles + nm / kDriveNanometresASecond + kOrderBytes * kByteSeconds;
}
double ReferenceSeconds() {
  return kRezero + kOrderBytes * kByteSeconds;
}
double GainSeconds() {
  return kGain + kOrderBytes * kByteSeconds;
}
double ReadSeconds(std::int32_t samples) {
  return kReadingBegins + samples * (kSample + kLineBytes * kByteSeconds) + kOrderBytes * kByteSeconds;
}
double CellSeconds() {
  return kCellStep + kOrderBytes * kByteSeconds;
}

PlannedPass PlanReferences(const ScanGrid& grid) {
  return {"blank", static_cast<std::int32_t>(grid.Count()), MoveSeconds(grid.Step()) + ReferenceSeconds()};
}

PlannedPass PlanSpectrum(const ScanGrid& grid, std::int32_t samples) {
  return {"sample", static_cast<std::int32_t>(grid.Count()),
          MoveSeconds(grid.Step()) + GainSeconds() + ReadSeconds(samples)};
}

PlannedPass PlanTableBlank(const std::vector<double>& wavelengths) {
  const auto count = static_cast<double>(wavelengths.size());
  return {"blank", 1, RoundTripSeconds(wavelengths) + count * ReferenceSeconds()};
}

PlannedPass PlanTableSamples(const std::vector<double>& wavelengths, std::int32_t samples) {
  const auto count = static_cast<double>(wavelengths.size());
  return {"sample", samples,
          RoundTripSeconds(wavelengths) + count * (GainSeconds() + ReadSeconds(kTableReading))};
}

PlannedPass PlanTimeScan(std::int32_t points, double intervalSeconds) {
  return {"point", points, intervalSeconds + ReadSeconds(kTimeScanReading)};
}

std::string PlanText(const std::vector<PlannedPass>& passes) {
  std::string text;
  double seconds = 0;
  for (const PlannedPass& pass : passes) {
    text += (text.empty() ? "Plan: " : ", ") + PassText(pass);
    seconds += pass.Seconds();
  }
  return text + (passes.size() > 1 ? "; in all about " + DurationText(seconds) : std::string()) + ".";
}

std::string DurationText(double seconds) {
  if (!(seconds > 0)) return "0 s";
  if (seconds < 9.95) return Format(seconds, seconds < 0.995 ? "0.00 s" : "0.0 s");
  const std::int64_t whole = std::llround(std::fmin(seconds, 1e9));
  if (whole < 60) return std::to_string(whole) + " s";
  if (whole < 3600) return std::to_string(whole / 60) + " min " + TwoDigits(whole % 60) + " s";
  const std::int64_t minutes = (whole + 30) / 60;
  return std::to_string(minutes / 60) + " h " + TwoDigits(minutes % 60) + " min";
}

}  // namespace spectrane
