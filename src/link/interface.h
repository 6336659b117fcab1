#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/setting.h"
#include "link/instrumentstate.h"
#include "link/sci.h"

namespace spectrane {

/// What became of one port in a search.
struct PortAttempt {
  int Number = 0;
  /// None when the port opened; then the device behind it did not answer as an instrument does.
  PortFault Fault = PortFault::None;
  /// The platform's words for the fault; may be empty.
  std::string Reason;
};

/// How the last command of Interface went, beside its Boolean.
struct ReplyQuality {
  ExchangeEnd End = ExchangeEnd::Passed;
  /// Data lines that were missing or could not be read as numbers.
  int LinesLost = 0;
  /// The instrument was heard to restart, in this command or while the line fell quiet before it: it has
  /// forgotten all that it was told.
  bool Restarted = false;
  /// The exchange passed, every line that the command promises came and was readable, and the instrument is
  /// as the commands before have left it.
  bool Complete() const { return End == ExchangeEnd::Passed && LinesLost == 0 && !Restarted; }
};

/// The command set of the instrument: one procedure a command. Each builds the command text, exchanges it
/// under its own time-out and hands over typed values. Clamps work on the caller's variable; out arguments
/// keep their values when nothing readable came. False means that the exchange failed or the content did not
/// match. Nothing here shows a message. Every procedure that exchanges yields to the message loop before and
/// after. (The module's name in capitals: `interface` is a macro on one platform.)
class Interface {
 public:
  /// All three must outlive this object. `settings` keeps the port on which the instrument answered.
  Interface(SCI& sci, InstrumentState& state, Setting& settings);

  /// Finds the port on which the instrument answers and leaves it open: ports 1 to 16, or the stored one.
  bool FindInstrument();
  int GetPortID() const { return state_.PortNumber; }
  /// Closes the port; true when one was open.
  bool ReleaseInstrument();
  /// What the search tried, in order; for Details texts.
  const std::vector<PortAttempt>& Attempts() const { return attempts_; }
  /// Called with each port number before it is tried.
  std::function<void(int)> OnProbe;

  bool CheckCompany();
  /// The maker's text of the last `company` reply.
  const std::string& Company() const { return company_; }
  bool ConnectInstrument();
  bool QuitInstrument();

  /// Full energy [counts] and gain of the blank now in the beam.
  bool Rezero(std::int32_t& fullEnergy, std::int32_t& gain);
  /// Dark energies [counts]: measured anew, or as the instrument has stored them.
  bool ResetDark(DarkEnergyTable& table);
  bool GetDark(DarkEnergyTable& table);
  /// One reading [counts] out of `sampleCount` samples (clamped to 1..200): a position statistic with the
  /// highest sample moved out of the way. 0 on failure; LastReply() tells a failure from a reading of 0.
  std::int32_t GetEnergy(std::int32_t& sampleCount);
  bool SetGain(std::int32_t& gain);

  /// Moves the monochromator [nm]; returns when it has arrived.
  bool SetWavelength(double& wavelength);
  bool GetWavelength(double& wavelength);
  bool AdjustWavelength();
  bool GetStartWavelength(double& wavelength);
  bool GetEndWavelength(double& wavelength);

  bool SetLampWavelength(double& wavelength);
  bool GetLampWavelength(double& wavelength);
  bool TungstenLampOn();
  bool TungstenLampOff();
  bool GetTungstenLamp(bool& lit);
  bool DeuteriumLampOn();
  bool DeuteriumLampOff();
  bool GetDeuteriumLamp(bool& lit);

  bool GetSlip(std::int32_t& code);
  bool SetSlip(std::int32_t& code);
  bool GetSampler(std::int32_t& kind);
  bool SetSampler(std::int32_t& position);

  const ReplyQuality& LastReply() const { return lastReply_; }

  /// Time-out [s] of a command text as it goes over the line; 3 for a text that is no command of the set.
  static int TimeoutFor(std::string_view text);

 private:
  enum class Command : std::size_t;
  struct CommandRow;
  static const CommandRow kRows[];
  static const CommandRow& Row(Command command);

  bool Send(Command command, const std::string& argument, std::string& text, std::string& reply);
  void NoteRestart();
  bool Order(Command command, const std::string& argument = {});
  /// Counts a move that did not arrive.
  bool Moved(bool arrived);
  bool OrderInteger(Command command, std::int32_t& value);
  bool AskFirstLine(Command command, std::string& line);
  bool AskLong(Command command, std::int32_t& value);
  bool AskWavelength(Command command, double& value);
  bool AskLamp(Command command, bool& lit);
  bool AskDark(Command command, DarkEnergyTable& table);
  bool ReadEnergies(std::int32_t count, std::vector<std::int32_t>& energies);
  bool ProbePort(int number);
  bool FoundAt(int number);
  double ClampWavelength(double wavelength) const;

  SCI& sci_;
  InstrumentState& state_;
  Setting& settings_;
  std::vector<PortAttempt> attempts_;
  std::string company_;
  ReplyQuality lastReply_;
  std::int64_t restartsSeen_ = 0;
};

/// The reading out of samples as they came: the highest sample is carried to the end, and the sample at the
/// place n / 2 (rounded half to even, counted from 1) is taken; of one sample itself, of two their mean,
/// rounded half to even. No samples give 0.
std::int32_t EnergyOfSamples(std::vector<std::int32_t> samples);

}  // namespace spectrane
