#include "link/connection.h"

#include <array>

#include "base/language.h"
#include "base/textnumbers.h"

namespace spectrane {
namespace {

constexpr int kPortError = 1097;
constexpr int kCannotConnect = 1099;
constexpr int kConnected = 1100;
constexpr int kManualShelf = 1101;
constexpr int kSlipWidth = 1102;

}  // namespace

Connection::Connection(Interface& instrument, InstrumentState& state, LiveReading& live, MainDisplay& display,
                       Messages& messages, const Brand& brand)
    : instrument_(instrument),
      state_(state),
      live_(live),
      display_(display),
      messages_(messages),
      brand_(brand) {}

bool Connection::mmuOperationConnect() {
  const InstrumentRun run(state_);
  if (!run.Owns() || state_.InstrumentConnected) return state_.InstrumentConnected;
  report_ = {};
  live_.ForgetLinkLost();
  live_.SampleTimerStop();
  state_.PortOpen = true;
  state_.InstrumentBusy = true;
  // Those of an earlier instrument would pass for this one's when it does not tell its own.
  state_.DarkEnergies = {};
  state_.DarkTableWhole = false;
  display_.SetRemark({});
  display_.Lock(true);
  if (!instrument_.FindInstrument()) return Refused(kPortError, DescribeAttempts(instrument_.Attempts()));
  if (!instrument_.CheckCompany())
    return Refused(kCannotConnect, "The instrument gave no answer to \"company\".");
  if (!instrument_.ConnectInstrument()) return Refused(kCannotConnect, "The instrument refused \"connect\".");
  state_.InstrumentConnected = true;
  ReadWavelength();
  if (ReadReference()) {
    live_.mmuSetEnergy(state_.FullEnergy);
    live_.SampleTimerStart();
  }
  display_.SetStatus(StatusPane::Connection, Text(kConnected));
  ReadSampler();
  if (brand_.ReadsSlit) ReadSlit();
  ReadRange();
  state_.InstrumentBusy = false;
  display_.Lock(false);
  display_.UpdateCommands();
  return true;
}

bool Connection::Refused(int textId, const std::string& details) {
  messages_.Show(textId, details);
  instrument_.ReleaseInstrument();
  state_.InstrumentBusy = false;
  display_.Lock(false);
  display_.UpdateCommands();
  return false;
}

void Connection::ReadWavelength() {
  double wavelength = state_.CurrentWavelength;
  if (!instrument_.GetWavelength(wavelength)) return;
  report_.HasWavelength = instrument_.LastReply().Complete();
  state_.CurrentWavelength = wavelength;
  live_.ToolsBarWaveLength(wavelength);
  live_.ToolsBarAbsData(0.0);
  live_.ToolsBarTransData(100.0);
}

bool Connection::ReadReference() {
  report_.HasDark = instrument_.GetDark(state_.DarkEnergies);
  const bool darkWhole = instrument_.LastReply().Complete();
  if (report_.HasDark) state_.DarkTableWhole = darkWhole;
  std::int32_t fullEnergy = 0;
  std::int32_t gain = 0;
  report_.HasReference = instrument_.Rezero(fullEnergy, gain) && instrument_.LastReply().Complete();
  if (report_.HasReference) state_.GainIndex = gain;
  report_.FullEnergy = fullEnergy;
  report_.Gain = gain;
  const bool both = report_.HasDark && report_.HasReference;
  if (both) {
    live_.TakeDarkEnergyOf(gain);
    state_.FullEnergy = fullEnergy;
    live_.ShowReference();
  }
  if (!darkWhole) display_.SetRemark(kDarkIncomplete);
  return both;
}

void Connection::ReadSampler() {
  std::int32_t kind = 0;
  instrument_.GetSampler(kind);
  report_.SamplerKind = kind;
  state_.SamplerPresent = kind != 0;
  if (kind == 0) display_.SetStatus(StatusPane::Sampler, Text(kManualShelf));
}

void Connection::ReadSlit() {
  std::int32_t code = 0;
  instrument_.GetSlip(code);
  display_.SetStatus(StatusPane::Slit, SlipWidthText(code));
}

// Taken only when they make a range: a garbled limit must not lock the monochromator out of its own
// wavelengths.
void Connection::ReadRange() {
  const InstrumentState defaults;
  double start = 0.0;
  double end = 0.0;
  if (!instrument_.GetStartWavelength(start) || !(start > 0.0)) start = defaults.WavelengthMin;
  if (!instrument_.GetEndWavelength(end) || !(end > 0.0)) end = defaults.WavelengthMax;
  const bool range = start < end;
  state_.WavelengthMin = range ? start : defaults.WavelengthMin;
  state_.WavelengthMax = range ? end : defaults.WavelengthMax;
}

void Connection::ConnectCommand() {
  if (!state_.InstrumentConnected) mmuOperationConnect();
}

void Connection::ReleaseCommand() {
  const InstrumentRun run(state_);
  if (run.Owns() && state_.InstrumentConnected) ReleaseConnection();
}

void Connection::ReleaseConnection() {
  live_.ForgetLinkLost();
  live_.SampleTimerStop();
  state_.InstrumentBusy = true;
  instrument_.QuitInstrument();
  state_.InstrumentConnected = false;
  display_.SetStatus(StatusPane::Connection, Text(kNoInstrument));
  live_.ToolsBarClearWaveLength();
  live_.ToolsBarClearAbsData();
  live_.ToolsBarClearTransData();
  instrument_.ReleaseInstrument();
  state_.InstrumentBusy = false;
  display_.SetRemark({});
  display_.UpdateCommands();
}

std::string SlipWidthText(std::int32_t code) {
  static constexpr std::array<const char*, 5> widths = {"0.5 nm", "1.0 nm", "2.0 nm", "4.0 nm", "5.0 nm"};
  std::string text = Text(kSlipWidth);
  if (code >= 1 && code <= static_cast<std::int32_t>(widths.size()))
    text += widths[static_cast<std::size_t>(code) - 1];
  return text;
}

std::string DescribeAttempts(const std::vector<PortAttempt>& attempts) {
  if (attempts.empty()) return "No port was tried: the stored port number is not one of 1 to 8.";
  std::string text;
  std::string missing;
  for (const PortAttempt& attempt : attempts) {
    const std::string number = std::to_string(attempt.Number);
    const std::string words = attempt.Reason.empty() ? std::string() : " (" + attempt.Reason + ")";
    switch (attempt.Fault) {
      case PortFault::Missing:
        if (attempt.Reason.empty()) {
          missing += (missing.empty() ? "" : ", ") + number;
        } else {
          text += "port " + number + ": no such port" + words + "\n";
        }
        break;
      case PortFault::NoRights:
        text += "port " + number + ": no rights" + words + "\n";
        break;
      case PortFault::InUse:
        text += "port " + number + ": in use" + words + "\n";
        break;
      case PortFault::Other:
        text += "port " + number + ": cannot be opened" + words + "\n";
        break;
      case PortFault::None:
        text += "port " + number + ": no answer of an instrument\n";
    }
  }
  if (!missing.empty()) text += "no such port: " + missing + "\n";
  text.pop_back();
  return text;
}

}  // namespace spectrane
