#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "acquire/acquisition.h"

namespace spectrane {

/// Absorbances of samples at several wavelengths, for tables of samples: the blank at every wavelength first,
/// then each sample at the gains of the blank.
class WavelengthTable {
 public:
  /// [nm], in the order of the columns.
  WavelengthTable(AcquisitionSteps& steps, std::vector<double> wavelengths);

  /// The blank in the beam, at each wavelength a move and a `rezero`.
  AcquisitionEnd TakeBlanks();
  /// The sample in the beam: at each wavelength a move, the gain of its blank and a reading. `abs` has one
  /// absorbance for each wavelength then; after any end but Finished it is as it was.
  AcquisitionEnd MeasureSample(std::vector<double>& abs);

  const std::vector<double>& Wavelengths() const { return wavelengths_; }

 private:
  struct Blank {
    std::int32_t FullEnergy = 0;
    std::int32_t Gain = 0;
  };

  AcquisitionSteps& steps_;
  std::vector<double> wavelengths_;
  std::vector<Blank> blanks_;
};

}  // namespace spectrane
