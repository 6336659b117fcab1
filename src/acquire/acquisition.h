#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "modes/testbench.h"

namespace spectrane {

/// How a run came to its end. What was measured up to there stays in every case.
enum class AcquisitionEnd {
  Finished,
  /// StopWanted() asked for it.
  Stopped,
  /// An exchange failed, or its answer was incomplete: Interface::LastReply() tells.
  Failed,
  /// Another routine owns the instrument, or none is connected; nothing was sent.
  NotBegun,
};

/// The steps of which runs are made, each one exchange: move, gain, reading, blank, cell. A step that fails
/// is not tried again: an instrument that restarted has forgotten how it was trimmed, and what it reads then
/// no longer fits the reference; from then on every step fails. Every step yields.
class AcquisitionSteps {
 public:
  explicit AcquisitionSteps(const TestBench& bench) : bench_(bench) {}

  /// The monochromator goes there [nm], inside the range of the instrument.
  bool MoveTo(double wavelength);
  bool UseGain(std::int32_t gain);
  /// One reading [counts] out of so many samples.
  bool Read(std::int32_t samples, std::int32_t& energy);
  /// `rezero` with what stands in the beam: its energy [counts] and the gain that was chosen.
  bool TakeReference(std::int32_t& energy, std::int32_t& gain);
  /// Cell 1 to 8 of the automatic sampler.
  bool MoveSampler(std::int32_t cell);
  /// The cell of the blank, where a sampler is fitted; nothing to do without one.
  bool MoveToBlankCell();
  /// The stored dark energies of all gains into the state.
  bool ReadDark();

  /// Energy without light of a gain that the instrument has [counts].
  std::int32_t DarkOf(std::int32_t gain) const;
  /// Where the last MoveTo() went [nm]; before it where the monochromator stood at the connection.
  double At() const { return bench_.State.CurrentWavelength; }
  const InstrumentState& State() const { return bench_.State; }

  /// Asked before each point. True ends the run there.
  std::function<bool()> StopWanted;
  /// So many points of the pass under way are done.
  std::function<void(std::int32_t done)> OnDone;

  /// Runs `pass` as the one routine that owns the instrument. `pass` gives the end that it came to.
  AcquisitionEnd RunAlone(const std::function<AcquisitionEnd()>& pass);
  /// One step for each index below `count`, with the stop looked at before each.
  AcquisitionEnd ForEach(std::int32_t count, const std::function<bool(std::int32_t)>& step);

 private:
  bool Complete() const { return bench_.Instrument.LastReply().Complete() && SameInstrument(); }
  /// It has not restarted since the first pass began: a reference of one pass serves the next.
  bool SameInstrument() const { return !restarts_ || *restarts_ == bench_.State.RestartCount; }

  TestBench bench_;
  std::optional<std::int64_t> restarts_;
};

}  // namespace spectrane
