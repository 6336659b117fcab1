#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "link/instrumentlink.h"

namespace spectrane {

/// Wavelengths between which the lamps may change [nm], both included.
inline constexpr double kLampSwitchLowest = 300.0;
inline constexpr double kLampSwitchHighest = 400.0;

enum class EntryFault { None, NoNumber, OutOfRange };

/// A wavelength as somebody typed it.
struct WavelengthEntry {
  EntryFault Fault = EntryFault::None;
  /// [nm] To one decimal, the step of the instrument; 0 with a fault.
  double Value = 0.0;
};

/// Reads a text that must be a number from `lowest` to `highest` [nm], both included. What is typed beyond
/// the limits is out of range by however little.
WavelengthEntry ReadWavelengthEntry(std::string_view text, double lowest, double highest);

/// Where the monochromator stands [nm]; nothing when the exchange failed or the answer is no wavelength.
/// Yields.
std::optional<double> ReadWavelength(InstrumentLink& link);
/// The wavelength at which the lamps change [nm]; nothing as above. Yields.
std::optional<double> ReadLampWavelength(InstrumentLink& link);

/// Moves the monochromator and takes over where it stands then, which is given back; a move that failed says
/// nothing by itself. Nothing: the position could not be read, and the one known before stays. Yields.
std::optional<double> MoveWavelength(InstrumentLink& link, double wavelength);
/// Behind a move: takes over where the monochromator stands [nm]. Nothing: it could not be read, and the move
/// counts as lost. Yields.
std::optional<double> TakePosition(InstrumentLink& link);
/// As MoveWavelength, for the wavelength at which the lamps change. Yields.
std::optional<double> MoveLampWavelength(InstrumentLink& link, double wavelength);

/// What the program knows of the monochromator's position, and its field, become `wavelength` [nm].
void TakeWavelength(InstrumentLink& link, double wavelength);

/// The code of the slit that is set, 1 to 5, or 0 when the instrument names another one; nothing when the
/// exchange failed. Yields.
std::optional<std::int32_t> ReadSlit(InstrumentLink& link);
/// Sets the slit of that code and shows its width in the status bar. False: the exchange failed. Yields.
bool SetSlit(InstrumentLink& link, MainDisplay& display, std::int32_t code);

}  // namespace spectrane
