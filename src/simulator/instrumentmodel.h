#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/noise.h"
#include "simulator/optics.h"
#include "simulator/samples.h"

namespace spectrane {

/// How a simulated instrument is built.
struct InstrumentOptions {
  bool Instant = false;  ///< commands take no time
  double Speed = 1.0;    ///< factor on the speed of every command
  std::uint64_t Seed = 1;
  int Gains = 8;  ///< 8 or 11
  double StartNm = 190.0;
  double EndNm = 1100.0;
  bool Sampler = false;
  std::string Beam = "blank";
  double Noise = 1.0;  ///< factor on the noise; 0 gives exact readings
  std::string Company = "Simulated instrument";
};

/// A lamp: switched by command, and possibly burnt out without the instrument noticing.
struct Lamp {
  bool Lit = true;
  bool Dead = false;
  bool Warming = false;  ///< lit after the power-up and not yet steady
  std::int64_t LitAtMs = 0;
};

/// State and physics of the simulated instrument. Times are milliseconds of the caller's clock. The
/// procedures that move something give the time the move takes at normal speed [ms].
class InstrumentModel {
 public:
  static constexpr int Cells = 8;
  static constexpr double PowerUpWavelength = 546.0;
  static constexpr double PowerUpLampSwitch = 340.0;

  explicit InstrumentModel(const InstrumentOptions& options);

  /// Power off and on: wavelength home, lamps lit, gain and blank forgotten, sampler at cell 1. What stands
  /// in the beam stays there.
  void Restart(std::int64_t nowMs);

  double Wavelength() const { return wavelength_; }
  double LampSwitch() const { return lampSwitch_; }
  int Gain() const { return gain_; }
  double Trim() const { return trim_; }
  int SlitCode() const { return slit_; }
  int Gains() const { return gains_; }
  double StartNm() const { return startNm_; }
  double EndNm() const { return endNm_; }
  bool TungstenInUse() const { return wavelength_ >= lampSwitch_; }
  const std::vector<int>& StoredDark() const { return storedDark_; }
  /// How often dark energies were measured and the wavelength was calibrated since it was built.
  int DarkMeasurements() const { return darkMeasurements_; }
  int Calibrations() const { return calibrations_; }

  /// To the nearest 0.1 nm inside the range.
  int MoveTo(double nm);
  int SetLampSwitch(double nm);
  int Calibrate();
  bool SetGain(int gain);
  bool SetSlit(int code, int& takesMs);
  bool MoveSampler(int cell, int& takesMs, std::int64_t nowMs);
  /// Measures the dark energy of every gain with the beam closed and stores it.
  void MeasureDark();
  int Switch(Lamp& lamp, bool on, int warmUpMs, std::int64_t nowMs);
  /// Chooses gain and trim for what stands in the beam: the highest gain whose signal stays below the aim,
  /// then the trim that reaches it. The trim is kept for this wavelength and gain and comes back with them.
  /// Returns the energy measured then [counts].
  int Rezero(std::int64_t nowMs);
  /// One raw reading [counts], 0 … full scale.
  int Energy(std::int64_t nowMs);

  /// Puts a sample into the beam: into the shelf, or into the cell that stands there. False: no such sample.
  bool PutInBeam(std::string_view name, std::int64_t nowMs);
  /// Cells 1 … 8 of the sampler; 0 is the shelf without sampler.
  bool FillCell(int cell, std::string_view name, std::int64_t nowMs);
  void FitSampler(bool fitted, std::int64_t nowMs);
  bool SamplerFitted() const { return samplerFitted_; }
  int Cell() const { return cell_; }
  const Sample& InBeam() const { return *Place().Content; }
  const std::string& CellName(int cell) const { return cells_[static_cast<std::size_t>(cell)].Content->Name; }
  /// Absorbance of what stands in the beam as the slit shows it, without stray light and noise.
  double TrueAbsorbance(std::int64_t nowMs) const;
  /// Light of a lamp just lit as a share of what it gives when steady: 0.97 … 1.
  static double ShareOfSteady(const Lamp& lamp, std::int64_t nowMs);
  /// Light behind the sample at gain 1 [counts above the dark energy].
  double Light(std::int64_t nowMs) const;

  /// The operator's side: everything here may be changed at any time.
  Lamp Tungsten;
  Lamp Deuterium;
  double Noise = 1.0;
  double StrayBase = optics::DefaultStray;
  bool Jammed = false;  ///< the drive no longer moves, the instrument does not notice
  bool Busy = false;    ///< refuses `connect`
  std::string Company;

 private:
  struct BeamPlace {
    const Sample* Content = nullptr;
    std::int64_t InBeamSinceMs = -1;  ///< −1: not yet in the beam
  };

  const BeamPlace& Place() const { return cells_[static_cast<std::size_t>(PlaceIndex())]; }
  int PlaceIndex() const { return samplerFitted_ ? cell_ : 0; }
  double SecondsInBeam(std::int64_t nowMs) const;
  void StartClockOfPlace(std::int64_t nowMs);
  int WavelengthKey() const;
  void RecallTrim();
  double LampOutput(std::int64_t nowMs) const;
  /// The converter: signal plus dark energy with noise, rounded and clipped.
  int Convert(double signal);

  bool samplerFitted_;
  int cell_ = 1;
  int gains_;
  double startNm_;
  double endNm_;
  bool steadyLamps_;
  SeededNoise noise_;
  double wavelength_ = PowerUpWavelength;
  double lampSwitch_ = PowerUpLampSwitch;
  int gain_ = 1;
  double trim_ = 1.0;
  struct Zero {
    int Gain = 0;
    double Trim = 1.0;
  };
  /// By wavelength in tenths of a nanometre.
  std::map<int, Zero> zeros_;
  int slit_ = 2;
  std::vector<int> storedDark_;
  int darkMeasurements_ = 0;
  int calibrations_ = 0;
  std::array<BeamPlace, Cells + 1> cells_;  ///< 0 is the shelf without sampler
};

}  // namespace spectrane
