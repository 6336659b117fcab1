#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "simulator/console.h"
#include "simulator/simulatedline.h"

namespace spectrane {

/// What a lamp shows to somebody who opens the lamp house.
enum class LampShow { Off, Warming, Lit, Dead };

/// What is known of the program at the other end. A program that goes without `quit` is not noticed.
enum class FarEnd { Nobody, Asking, Connected, Left };

/// Everything that can be seen of the instrument in one moment.
struct CompartmentState {
  const Sample* Beam = nullptr;
  double BeamAbsorbance = 0.0;  ///< true one at this wavelength and slit; infinite behind a blocked beam
  bool SamplerFitted = false;
  int Cell = 1;                                               ///< 1 … 8, the one that stands in the beam
  std::array<const Sample*, InstrumentModel::Cells> Cells{};  ///< cell 1 first
  double Wavelength = 0.0;                                    ///< [nm]
  bool TungstenInUse = true;
  LampShow Tungsten = LampShow::Lit;
  LampShow Deuterium = LampShow::Lit;
  bool TungstenDead = false;
  bool DeuteriumDead = false;
  int Gain = 1;
  int Gains = 8;
  double Trim = 1.0;
  int SlitCode = 2;
  double SlitNm = 1.0;
  bool Noisy = true;
  bool Jammed = false;
  bool Busy = false;
  std::size_t PendingFaults = 0;
  bool Plugged = false;
  std::string Path;  ///< where a program finds the line; while it is broken, where it was
  FarEnd Program = FarEnd::Nobody;
  bool Working = false;  ///< an answer is not complete yet
  std::int64_t Requests = 0;
  std::string LastRequest;  ///< empty: none yet
  std::string LastFault;    ///< of the answer to it; empty: in order
  std::int64_t SecondsSinceRequest = 0;

  bool operator==(const CompartmentState&) const = default;
};

/// The instrument as its own window sees it: what shows, and the operator's commands. All references must
/// outlive this object.
class Compartment {
 public:
  /// `plugged`: whether the line is joined.
  Compartment(SimulatedLine& line, const Clock& clock, Console& console, std::function<bool()> plugged);

  CompartmentState State() const;
  /// A command of the prompt; the result says what went wrong, empty when nothing did.
  std::string Perform(std::string_view command);

  /// To be told of each request, and of the line.
  void NoteRequest(const ExchangeRecord& record);
  void NoteJoined(const std::string& path);
  void NoteBroken();

  /// Called after each of these and after each command; may come many times in a row.
  std::function<void()> OnChange;

 private:
  void Changed() const;

  SimulatedLine& line_;
  const Clock& clock_;
  Console& console_;
  std::function<bool()> plugged_;
  std::string path_;
  FarEnd program_ = FarEnd::Nobody;
  std::string lastRequest_;
  std::string lastFault_;
  std::int64_t lastRequestAtMs_ = 0;
};

}  // namespace spectrane
