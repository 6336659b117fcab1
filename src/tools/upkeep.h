#pragma once

#include "link/instrumentlink.h"

namespace spectrane {

/// How a piece of upkeep ended. LinkLost: the instrument did not answer the link test, and was asked for
/// nothing more.
enum class UpkeepEnd { LinkLost, Failed, Done };

/// Has the dark energy of every gain measured anew, into InstrumentState::DarkEnergies. The live reading
/// must be off. Yields.
UpkeepEnd MeasureDarkEnergies(InstrumentLink& link, MainDisplay& display);

/// Runs the wavelength self-calibration, which takes minutes, then reads wavelength, dark energies and a new
/// reference. Failed: nothing of what the program knew has changed; the three fields show no values. The live
/// reading must be off. Yields.
UpkeepEnd ResetWavelength(InstrumentLink& link);

enum class LampKind { Tungsten, Deuterium };
/// How a lamp command ended; of its three steps the one that failed, or Switched.
enum class LampEnd { LinkLost, StateUnknown, NotSwitched, Switched };

/// Turns a lamp that is lit off and one that is off on. `lit` tells what it is afterwards; it keeps its value
/// when the state could not be asked for. Yields.
LampEnd SwitchLamp(InstrumentLink& link, LampKind lamp, bool& lit);

}  // namespace spectrane
