#pragma once

#include <array>
#include <cstdint>
#include <limits>

namespace spectrane {

/// Gains have numbers below this; entry 0 of a table by gain is not used.
inline constexpr int kGainTableSize = 12;
inline constexpr std::int32_t kUnknownGain = std::numeric_limits<std::int32_t>::min();
inline constexpr int kSamplerPositionCount = 8;
inline constexpr int kEnergyRingUsed = 20;

/// Dark energy [counts] of each gain; entry i belongs to gain i.
using DarkEnergyTable = std::array<std::int32_t, kGainTableSize>;

/// What the program knows of its one instrument, shared by all that talk to it.
struct InstrumentState {
  /// Settable wavelengths [nm], both included.
  double WavelengthMin = 190.0;
  double WavelengthMax = 1100.0;
  /// Gain steps of the instrument: 8, or 11 on one brand.
  int GainCount = 8;
  /// The serial port is held by a connection or a connection attempt.
  bool PortOpen = false;
  /// Port on which the instrument answered; 0 before.
  int PortNumber = 0;
  DarkEnergyTable DarkEnergies = {};
  /// The last answer of this connection that brought dark energies had one for every gain.
  bool DarkTableWhole = false;
  /// An automatic sampler answered at connect.
  bool SamplerPresent = false;
  /// Cell of the blank, 1 to 8.
  std::int32_t SamplerZeroPosition = 1;
  /// Which cells are in use; entry i belongs to cell i, entry 0 is not used.
  std::array<bool, kSamplerPositionCount + 1> SamplerPositions = {true, true, true, true, true,
                                                                  true, true, true, true};

  /// Raw readings [counts] that stand for 100 %T and for 0 %T.
  std::int32_t FullEnergy = 0;
  std::int32_t DarkEnergy = 0;
  /// Gain as the last `rezero` reported it; kUnknownGain once the instrument may have restarted.
  std::int32_t GainIndex = 0;
  /// How often `rezero` was sent: an instrument may trim itself anew at each, so a reference that was read
  /// before no longer fits what it reads after.
  std::int64_t RezeroCount = 0;
  /// How often the instrument was heard to restart: gain, trim and wavelength are those of its power-up then,
  /// and no reference from before fits what it reads.
  std::int64_t RestartCount = 0;
  /// How many moves of the monochromator failed, or ended where it could not be asked: CurrentWavelength says
  /// nothing until it was asked again.
  std::int64_t LostMoves = 0;
  /// Wavelength of the monochromator [nm].
  double CurrentWavelength = 0.0;
  double CurrentAbs = 0.0;
  double CurrentTrans = 0.0;
  /// The connection sequence has succeeded and was not released since.
  bool InstrumentConnected = false;
  /// A routine is in the middle of instrument traffic.
  bool InstrumentBusy = false;
  /// A routine of several commands owns the instrument (InstrumentRun); no other may begin.
  bool RunUnderWay = false;
  /// 0: search all ports; 1: use the stored port.
  int PortSearchMode = 0;
  /// Offset [nm] that setting a wavelength adds; ignored at 5 and more in size.
  double WavelengthCorrection = 0.0;
  /// Next write position of the ring, 0 to 19.
  int SampleIndex = 0;
  /// The last 20 live energies; one entry more than is in use.
  std::array<std::int32_t, kEnergyRingUsed + 1> EnergyRing = {};
};

/// Owns the instrument while it lives, unless another one does already: connecting, releasing, blanks and
/// test runs, which yield between their commands, keep each other out by it. The live reading is no such run:
/// it gives way.
class InstrumentRun {
 public:
  explicit InstrumentRun(InstrumentState& state) : state_(state), owns_(!state.RunUnderWay) {
    state_.RunUnderWay = true;
  }
  ~InstrumentRun() {
    if (owns_) state_.RunUnderWay = false;
  }
  InstrumentRun(const InstrumentRun&) = delete;
  InstrumentRun& operator=(const InstrumentRun&) = delete;
  bool Owns() const { return owns_; }

 private:
  InstrumentState& state_;
  bool owns_;
};

}  // namespace spectrane
