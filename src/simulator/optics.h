#pragma once

#include <functional>

namespace spectrane::optics {

/// Converter's full scale [counts]: no reading is larger.
inline constexpr int FullScale = 65535;
/// Light signal that `rezero` aims at, above the dark energy [counts].
inline constexpr double BlankSignal = 49900.0;
inline constexpr int MaximumGains = 11;
/// Largest fine trim on top of a gain step (the next step is twice as high).
inline constexpr double MaximumTrim = 2.0;
/// Photoelectrons behind one count at gain 1; sets the size of the shot noise.
inline constexpr double ElectronsPerCount = 1000.0;
/// Noise of the amplifier itself [counts, standard deviation].
inline constexpr double ReadNoise = 1.0;
/// Share of unwanted light in mid-range; it grows towards 190 nm.
inline constexpr double DefaultStray = 5e-6;

inline constexpr int SlitCodes = 5;

/// Bandwidth of a slit code 1 … 5 [nm].
double SlitWidth(int code);
/// Amplification of a gain step 1 … 11; gain 1 has 1.
double GainFactor(int gain);
/// Energy of a gain step without light [counts].
int DarkEnergy(int gain);
/// Relative output of the tungsten lamp behind its balancing filter.
double Tungsten(double nm);
/// Relative output of the deuterium lamp, its two emission lines seen through `bandwidth` nm.
double Deuterium(double nm, double bandwidth);
/// Relative response of grating and detector together.
double Response(double nm);
/// Counts at gain 1 for one unit of lamp output times response.
double CountsPerUnit(double bandwidth);
/// Share of stray light at a wavelength; `base` is the share in mid-range.
double StrayLight(double nm, double base);

/// Transmittance seen through a slit with a triangular profile of `bandwidth` nm at half height.
double ThroughSlit(double nm, double bandwidth, const std::function<double(double)>& transmittance);

}  // namespace spectrane::optics
