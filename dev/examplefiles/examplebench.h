#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include "base/clock.h"
#include "base/setting.h"
#include "link/exclusion.h"
#include "link/instrumentlink.h"
#include "link/memoryport.h"
#include "link/messageloop.h"
#include "link/portlist.h"
#include "link/silentdisplay.h"
#include "modes/testbench.h"
#include "simulator/simulatedline.h"

namespace spectrane {

/// An example could not be made; the words name the step.
class ExampleFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What was read with the blank in the beam [counts], and the gain that holds for what is read against it.
struct Blank {
  std::int32_t FullEnergy = 0;
  std::int32_t DarkEnergy = 0;
  std::int32_t Gain = 0;
};

/// A simulated instrument, connected, and the hands of somebody who works on it. Time is simulated: the
/// lamps, the drive and a reaction take their time, the caller does not wait for it. The same seed and the
/// same moves give the same readings. Every step that fails throws ExampleFailure.
class ExampleBench : private SilentDisplay, private Messages {
 public:
  /// `scratch`: a folder that does not exist yet, for the settings that a connection leaves; it goes with
  /// this object. `sampler`: the eight-cell sampler is fitted.
  ExampleBench(const std::string& scratch, std::uint64_t seed, bool sampler = false);
  ~ExampleBench() override;
  ExampleBench(const ExampleBench&) = delete;
  ExampleBench& operator=(const ExampleBench&) = delete;

  /// By hand: a sample of the simulator's list goes into the beam, or into a cell of the sampler.
  void PutInBeam(const std::string& sample);
  void FillCell(int cell, const std::string& sample);

  void MoveTo(double nm);
  void MoveSampler(std::int32_t cell);
  /// The lamps change places at this wavelength.
  void ChangeLampsAt(double nm);
  /// Rezero with what stands in the beam, as the main window does it.
  Blank TakeBlank();
  void UseGain(std::int32_t gain);
  /// One reading [counts] out of so many samples.
  std::int32_t Read(std::int32_t samples);
  void Wait(std::int64_t ms);

  const InstrumentState& State() const { return link_->State; }
  /// For the test runs of the program itself.
  TestBench Tools();

 private:
  /// One port, with the instrument behind it.
  class OnePort : public PortList {
   public:
    OnePort(ManualClock& clock, LinePeer& peer) : clock_(clock), peer_(peer) {}
    std::string Path(int number) const override { return number == 1 ? "simulated" : std::string(); }
    std::unique_ptr<Port> MakePort(int) override { return std::make_unique<MemoryPort>(clock_, peer_); }

   private:
    ManualClock& clock_;
    LinePeer& peer_;
  };

  /// Nothing that asks for a box belongs into the making of an example.
  void Show(int textId, const std::string& details) override;

  void Require(bool done, const std::string& step) const;

  std::string scratch_;
  ManualClock clock_;
  ManualMessageLoop loop_{clock_};
  NoExclusion turn_;
  SimulatedLine instrument_;
  OnePort ports_{clock_, instrument_};
  Setting settings_;
  std::unique_ptr<InstrumentLink> link_;
};

}  // namespace spectrane
