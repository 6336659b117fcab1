#pragma once

#include <span>
#include <string>
#include <string_view>

#include "simulator/compartment.h"
#include "simulator/faultscript.h"

namespace spectrane {

/// The plain words in which the instrument's window speaks.

std::string_view LampWords(LampShow show);
/// "546.0 nm, tungsten lamp"
std::string WavelengthWords(const CompartmentState& state);
/// "gain 3 of 8, trim 1.250"
std::string GainWords(const CompartmentState& state);
/// "slit 2 (1.0 nm)"
std::string SlitWords(const CompartmentState& state);
/// "0.400 Abs"; "no light" when the beam is blocked
std::string AbsorbanceWords(const CompartmentState& state);
/// Whether a program is there, as far as the line tells.
std::string ProgramWords(const CompartmentState& state);
/// The last request and how long ago it was, with the fault of its answer.
std::string RequestWords(const CompartmentState& state);
/// The whole beam path in one sentence, for those who cannot see the drawing.
std::string BeamPathWords(const CompartmentState& state);

/// A kind of fault as an operator would call it.
std::string_view FaultWords(FaultKind kind);

}  // namespace spectrane
