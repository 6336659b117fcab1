#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>

#include "modes/quantitation/quantitationdocument.h"
#include "modes/testbench.h"

namespace spectrane {

/// Blank, standards and samples of the quantitation window, at one wavelength or at two, by hand or from the
/// automatic sampler.
class QuantitationTest : public RezeroTarget {
 public:
  QuantitationTest(const TestBench& bench, QuantitationDocument& document);

  /// Takes the blank at each wavelength in use, and fits the standards anew. Yields.
  void mmuOperationRezero() override;
  /// Measures the sample in the beam, or each sampler position in use. True when every row was taken; rows
  /// taken before a failure stay. Yields.
  bool mmuStartTest();
  /// Measures the standard of that row of the table and fits anew. With the automatic sampler SelectSampler
  /// says where it stands. Yields.
  bool MeasureStandard(std::int32_t row);

  bool TestRunning = false;
  bool IsConnected() const { return bench_.State.InstrumentConnected; }
  /// A start would not ask for a blank first: the blank of the document was taken by this test, and nothing
  /// has happened since that could make readings incomparable with it.
  bool BlankHolds() const;
  /// The blank that the document has now is not one of this test.
  void ForgetBlank() { blankRezero_ = kNoRezero; }
  /// Wavelengths that are measured: 1 or 2.
  static std::size_t WavelengthsInUse(const QuaOption& option) {
    return option.WaveLengthNumber == 1 ? 1 : 2;
  }

  /// A sample was begun, under this name; it is no record yet.
  std::function<void(const std::string& name)> OnSampleBegun;
  /// Absorbance of the sample under way at wavelength 0 or 1.
  std::function<void(std::size_t wavelength, double abs)> OnReading;
  /// The sample under way became the record with that index from 0.
  std::function<void(std::int32_t row)> OnRecord;
  /// The sample under way came to nothing.
  std::function<void()> OnSampleDropped;
  /// Moves the sampler to the cell of a standard, as the person chooses; false when nothing was chosen.
  std::function<bool()> SelectSampler;
  /// Asked between two instrument commands. True ends the blank or the run there, without a message; rows
  /// taken before stay.
  std::function<bool()> StopWanted;

 private:
  using Readings = std::array<double, 2>;

  bool TakeBlanks();
  bool TakeBlank(std::size_t index);
  bool MeasureAll();
  bool MeasureCells();
  bool MeasureSample(const std::string& name);
  bool ReadStandard(std::int32_t row);
  bool Read(Readings& abs, const std::function<void(std::size_t, double)>& onReading);
  bool ReadAt(std::size_t index, double& abs);
  bool MoveTo(std::size_t index, bool always);
  bool AskWavelength();
  /// The same before readings; asks for a blank when the instrument turned out to have restarted.
  bool AskBeforeTest();
  bool Failed();
  void TellFit(FitOutcome outcome);
  bool Stopped() const { return StopWanted && StopWanted(); }
  double WaveLength(std::size_t index) const { return document_.Option().WaveLengthList[index]; }

  TestBench bench_;
  QuantitationDocument& document_;
  /// Equal to no wavelength: the drive is moved.
  static constexpr double kNowhere = std::numeric_limits<double>::quiet_NaN();
  // Where the monochromator stands as far as this test knows.
  double standsAt_ = kNowhere;
  // Moves that were lost when this test last sent it; after another one it may stand anywhere.
  std::int64_t sentMoves_ = -1;
  /// Number of the rezero that the blank was taken with.
  static constexpr std::int64_t kNoRezero = -1;
  std::int64_t blankRezero_ = kNoRezero;
  std::int64_t blankRestarts_ = 0;
  /// What is to be told of where the drive stood.
  std::string astray_;
};

}  // namespace spectrane
