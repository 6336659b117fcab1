#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "acquire/scangrid.h"

namespace spectrane {

/// How long the commands of a real instrument take at its normal pace, bytes on the wire included [s]. The
/// travel is that of the drive over `nm` nanometres.
double MoveSeconds(double nm);
double ReferenceSeconds();
double GainSeconds();
double ReadSeconds(std::int32_t samples);
double CellSeconds();

/// One stretch of a run: so many points of one kind, one after the other.
struct PlannedPass {
  /// What is measured, as it stands in the text ("blank").
  std::string Name;
  std::int32_t Points = 0;
  double SecondsAPoint = 0;

  double Seconds() const { return Points * SecondsAPoint; }
};

PlannedPass PlanReferences(const ScanGrid& grid);
PlannedPass PlanSpectrum(const ScanGrid& grid, std::int32_t samples);
/// Blank and samples of a table at these wavelengths [nm]; a point is a blank or sample at all of them.
PlannedPass PlanTableBlank(const std::vector<double>& wavelengths);
PlannedPass PlanTableSamples(const std::vector<double>& wavelengths, std::int32_t samples);
/// A time scan: a reading and an interval [s] for each point.
PlannedPass PlanTimeScan(std::int32_t points, double intervalSeconds);

/// One line: the passes with their points, time a point and time in all, then the time of the whole run.
std::string PlanText(const std::vector<PlannedPass>& passes);

/// A time as a person says it: "0.29 s", "45 s", "4 min 12 s", "2 h 05 min".
std::string DurationText(double seconds);

}  // namespace spectrane
