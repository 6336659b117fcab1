#include "tools/upkeep.h"

#include "tools/setup.h"

namespace spectrane {
namespace {

bool LinkAnswers(InstrumentLink& link) {
  double wavelength = 0.0;
  if (link.Instrument.GetWavelength(wavelength)) return true;
  link.Live.ReportLinkLost();
  return false;
}

}  // namespace

UpkeepEnd MeasureDarkEnergies(InstrumentLink& link, MainDisplay& display) {
  if (!LinkAnswers(link)) return UpkeepEnd::LinkLost;
  if (!link.Instrument.ResetDark(link.State.DarkEnergies)) return UpkeepEnd::Failed;
  link.State.DarkTableWhole = link.Instrument.LastReply().Complete();
  display.SetRemark(link.State.DarkTableWhole ? std::string() : std::string(kDarkIncomplete));
  return UpkeepEnd::Done;
}

UpkeepEnd ResetWavelength(InstrumentLink& link) {
  if (!LinkAnswers(link)) return UpkeepEnd::LinkLost;
  link.Live.ToolsBarNoValues();
  if (!link.Instrument.AdjustWavelength()) return UpkeepEnd::Failed;
  TakePosition(link);
  link.Connect.ReadReference();
  return UpkeepEnd::Done;
}

LampEnd SwitchLamp(InstrumentLink& link, LampKind lamp, bool& lit) {
  if (!LinkAnswers(link)) return LampEnd::LinkLost;
  Interface& instrument = link.Instrument;
  const bool tungsten = lamp == LampKind::Tungsten;
  bool wasLit = lit;
  if (!(tungsten ? instrument.GetTungstenLamp(wasLit) : instrument.GetDeuteriumLamp(wasLit)) ||
      !instrument.LastReply().Complete()) {
    return LampEnd::StateUnknown;
  }
  const bool switched = wasLit ? (tungsten ? instrument.TungstenLampOff() : instrument.DeuteriumLampOff())
                               : (tungsten ? instrument.TungstenLampOn() : instrument.DeuteriumLampOn());
  lit = switched ? !wasLit : wasLit;
  if (!switched) link.Live.ReportLinkLost();
  return switched ? LampEnd::Switched : LampEnd::NotSwitched;
}

}  // namespace spectrane
