#pragma once

#include <cstdint>
#include <optional>

#include "base/displayformats.h"
#include "link/displays.h"
#include "link/instrumentstate.h"
#include "link/interface.h"
#include "link/sci.h"

namespace spectrane {

/// What the status bar says when dark energies are missing.
inline constexpr const char* kDarkIncomplete = "The instrument's dark table is incomplete.";

/// What takes the user's rezero command: the active document window.
class RezeroTarget {
 public:
  virtual ~RezeroTarget() = default;
  virtual void mmuOperationRezero() = 0;
};

/// The live reading of the main window, the three fields that show it, and the rezero procedures that feed
/// it.
class LiveReading {
 public:
  /// All must outlive this object.
  LiveReading(SCI& sci, Interface& instrument, InstrumentState& state, const DisplayFormats& formats,
              MainDisplay& display);

  void SampleTimerStart() { display_.EnableSampleTimer(true); }
  void SampleTimerStop() { display_.EnableSampleTimer(false); }
  /// One tick of the 100 ms timer: a reading into the ring, after every fifth one the display. A tick inside
  /// another routine's instrument traffic does nothing. Yields.
  void SampleTimerTick();

  /// Show a value in its field: empty while no instrument is connected.
  void ToolsBarWaveLength(double wavelength);
  void ToolsBarAbsData(double abs);
  void ToolsBarTransData(double trans);
  void ToolsBarClearWaveLength();
  void ToolsBarClearAbsData();
  void ToolsBarClearTransData();
  /// "------" in all three.
  void ToolsBarNoValues();
  /// Number formats have changed: the values that are on show are written anew, and nothing else.
  void FormatsChanged();

  /// New reference values after a rezero made by a window.
  void ToolsBarFullEnergyData(std::int32_t fullEnergy, std::int32_t darkEnergy, std::int32_t gainIndex);
  /// Fills the ring, so that the trimmed mean restarts there.
  void mmuSetEnergy(std::int32_t energy);

  /// The user's rezero: of `active` when a window is active, otherwise of the main window. Yields.
  void mmuOperationRezero(RezeroTarget* active);
  /// Rezero with 30 samples, refills the ring. False: nothing but the gain has changed. Yields.
  bool mmuRezeroEnergy();
  /// Rezero with 10 samples behind a link test; the ring is left to follow. False as above. Yields.
  bool mmuToolsbarReZero();

  /// Says in the status bar that the link is lost, until a reading passes; and forgets that, for a new
  /// connection.
  void ReportLinkLost();
  void ForgetLinkLost() { linkLost_ = false; }
  bool LinkLost() const { return linkLost_; }

  /// Dark energy of `gain` becomes the current one when the table has that gain.
  void TakeDarkEnergyOf(std::int32_t gain);
  /// Absorbance and %T of the reference against itself, shown in their fields, and what is wrong with it.
  void ShowReference();
  /// What the status bar says of the reference: no light, or no dark energy to go with it. Empty when all is
  /// well.
  std::string ReferenceRemark() const;

 private:
  bool TakeReference(std::int32_t sampleCount);
  bool Failed();
  void ShowMean();

  SCI& sci_;
  Interface& instrument_;
  InstrumentState& state_;
  const DisplayFormats& formats_;
  MainDisplay& display_;
  bool linkLost_ = false;
  // What the fields show; nothing for one without a value.
  std::optional<double> shownWavelength_;
  std::optional<double> shownAbs_;
  std::optional<double> shownTrans_;
};

/// The mean of ring entries 0 to 19 without one highest and one lowest, rounded half to even. Throws
/// NumericFault when it does not fit 32 bits.
std::int32_t TrimmedMean(const InstrumentState& state);

}  // namespace spectrane
