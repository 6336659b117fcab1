#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace spectrane {

/// Something that can stand in the simulated beam.
struct Sample {
  std::string Name;         ///< one word, for commands
  std::string Label;        ///< a short plain name
  std::string Description;  ///< a line for lists
  /// Absorbance in a 1 cm cell at `nm`, `seconds` after the sample first came into the beam.
  std::function<double(double nm, double seconds)> Absorbance;
  /// Bands narrow enough that the slit changes their height. Broad spectra are taken as flat across the slit,
  /// which keeps Beer's law exact.
  bool SharpBands = false;
  /// Lets no light pass at all, stray light included.
  bool Blocks = false;
};

/// Every sample the simulated instrument knows, in the order in which they are listed.
const std::vector<Sample>& AllSamples();

/// The sample of that name; null when there is none.
const Sample* FindSample(std::string_view name);

/// Share of the light that passes through the slit and the sample, without stray light: 0 … 1.
double Transmittance(const Sample& sample, double nm, double bandwidth, double seconds);

}  // namespace spectrane
