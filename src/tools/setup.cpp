#include "tools/setup.h"

#include "base/numbers.h"

namespace spectrane {
namespace {

constexpr std::int32_t kSlitCodes = 5;
constexpr const char* kStepFormat = "0.0";

std::optional<double> Readable(const InstrumentLink& link, bool passed, double wavelength) {
  if (!passed || !link.Instrument.LastReply().Complete() || !(wavelength > 0.0)) return std::nullopt;
  return wavelength;
}

}  // namespace

WavelengthEntry ReadWavelengthEntry(std::string_view text, double lowest, double highest) {
  const std::optional<double> typed = ParseNumber(text);
  if (!typed) return {EntryFault::NoNumber};
  if (*typed < lowest || *typed > highest) return {EntryFault::OutOfRange};
  const std::optional<double> value = ParseNumber(Format(*typed, kStepFormat));
  return {EntryFault::None, value.value_or(*typed)};
}

std::optional<double> ReadWavelength(InstrumentLink& link) {
  double wavelength = 0.0;
  const bool passed = link.Instrument.GetWavelength(wavelength);
  return Readable(link, passed, wavelength);
}

std::optional<double> ReadLampWavelength(InstrumentLink& link) {
  double wavelength = 0.0;
  const bool passed = link.Instrument.GetLampWavelength(wavelength);
  return Readable(link, passed, wavelength);
}

std::optional<double> MoveWavelength(InstrumentLink& link, double wavelength) {
  link.Instrument.SetWavelength(wavelength);
  return TakePosition(link);
}

std::optional<double> TakePosition(InstrumentLink& link) {
  const std::optional<double> position = ReadWavelength(link);
  if (position) {
    TakeWavelength(link, *position);
  } else {
    ++link.State.LostMoves;
  }
  return position;
}

std::optional<double> MoveLampWavelength(InstrumentLink& link, double wavelength) {
  link.Instrument.SetLampWavelength(wavelength);
  return ReadLampWavelength(link);
}

void TakeWavelength(InstrumentLink& link, double wavelength) {
  link.State.CurrentWavelength = wavelength;
  link.Live.ToolsBarWaveLength(wavelength);
}

std::optional<std::int32_t> ReadSlit(InstrumentLink& link) {
  std::int32_t code = 0;
  if (!link.Instrument.GetSlip(code)) return std::nullopt;
  return code >= 1 && code <= kSlitCodes ? code : 0;
}

bool SetSlit(InstrumentLink& link, MainDisplay& display, std::int32_t code) {
  if (!link.Instrument.SetSlip(code)) return false;
  display.SetStatus(StatusPane::Slit, SlipWidthText(code));
  return true;
}

}  // namespace spectrane
