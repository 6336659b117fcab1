#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "modes/photometry/photometrydocument.h"
#include "modes/testbench.h"

namespace spectrane {

/// Blank and measurement of the photometry window: one sample after another at one wavelength, by hand or
/// from the automatic sampler.
class PhotometryTest : public RezeroTarget {
 public:
  PhotometryTest(const TestBench& bench, PhotometryDocument& document);

  /// Takes the blank, after moving sampler and monochromator there. BlankDone tells whether it was read.
  /// Yields.
  void mmuOperationRezero() override;
  /// Measures the sample in the beam, or each sampler position in use. True when every row was taken; rows
  /// taken before a failure stay. Yields.
  bool mmuStartTest();

  /// Test wavelength [nm]; held inside the instrument's range when it is set there.
  double WaveLength = 546.0;
  /// Raw readings [counts] of the last blank, which holds for the wavelength and the gain it was taken at.
  std::int32_t BlankFullEnergy = 0;
  std::int32_t BlankDarkEnergy = 0;
  bool BlankDone = false;
  bool TestRunning = false;
  bool IsConnected() const { return bench_.State.InstrumentConnected; }
  /// A start would not ask for a blank first.
  bool BlankHolds() const;
  /// Called after each row that was stored, with its index from 0.
  std::function<void(std::int32_t)> OnRow;
  /// Asked between two instrument commands. True ends the blank or the run there, without a message; rows
  /// taken before stay.
  std::function<bool()> StopWanted;

 private:
  bool TakeBlank();
  bool MoveFrom(double wavelength);
  bool LinkFailed();
  void TellWavelength();
  bool Stopped() const { return StopWanted && StopWanted(); }
  bool MeasureAll();
  bool MeasureCells();
  bool MeasureRow(const std::string& note);
  bool RunFailed();

  TestBench bench_;
  PhotometryDocument& document_;
  // Energies of different gains or wavelengths cannot be compared.
  std::int64_t blankRezero_ = 0;
  std::int64_t blankRestarts_ = 0;
  std::int32_t blankGain_ = 0;
  double blankWavelength_ = 0;
  // Moves that were lost when this test last sent the drive; after another one it may stand anywhere.
  std::int64_t sentMoves_ = -1;
};

}  // namespace spectrane
