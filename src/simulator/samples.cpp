#include "simulator/samples.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <span>

#include "base/numbers.h"
#include "simulator/optics.h"
#include "simulator/smoothcurve.h"

namespace spectrane {
namespace {

struct Band {
  double Centre;  ///< [nm]
  double Width;   ///< full width at half height [nm]
  double Height;
};

double Bands(std::span<const Band> bands, double nm) {
  double sum = 0.0;
  for (const Band& band : bands) {
    const double offset = (nm - band.Centre) / band.Width;
    sum += band.Height * std::exp(-4.0 * std::numbers::ln2 * offset * offset);
  }
  return sum;
}

void AddPlain(std::vector<Sample>& list) {
  list.push_back({"blank", "Solvent (blank)", "the pure solvent: lets everything pass",
                  [](double, double) { return 0.0; }});
  list.push_back(
      {"closed", "Blocked beam", "blocked beam: no light", [](double, double) { return 0.0; }, false, true});
  for (const double absorbance : {0.3, 1.0, 2.0, 3.0}) {
    const std::string value = Format(absorbance, "0.0");
    list.push_back({"filter-" + value, "Grey filter " + value + " Abs",
                    "grey filter of " + value + " Abs at every wavelength",
                    [absorbance](double, double) { return absorbance; }});
  }
}

/// Absorptivity of the invented red dye [L/(mg cm)]: 0.1 at 546 nm, its side band adds less than 1e-9 there.
double DyeAbsorptivity(double nm) {
  static constexpr std::array<Band, 2> Dye{{{546.0, 70.0, 0.1}, {310.0, 60.0, 0.04}}};
  return Bands(Dye, nm);
}

void AddDyes(std::vector<Sample>& list) {
  constexpr std::array<double, 8> Concentrations{1, 2, 4, 6, 8, 10, 15, 20};
  for (std::size_t i = 0; i < Concentrations.size(); ++i) {
    const double concentration = Concentrations[i];
    const std::string amount = Format(concentration, "0") + " mg/L";
    list.push_back({"dye-" + std::to_string(i + 1), "Red dye " + amount, "red dye, " + amount,
                    [concentration](double nm, double) { return concentration * DyeAbsorptivity(nm); }});
  }
}

void AddWavelengthStandards(std::vector<Sample>& list) {
  // Positions are those of the perchloric solution at 1 nm bandwidth; widths and heights are invented.
  static constexpr std::array<Band, 14> Holmium{{{241.13, 3.6, 0.85},
                                                 {249.87, 3.0, 0.45},
                                                 {278.10, 3.0, 0.35},
                                                 {287.18, 3.2, 0.50},
                                                 {333.44, 2.8, 0.14},
                                                 {345.47, 2.8, 0.12},
                                                 {361.31, 3.2, 0.36},
                                                 {385.66, 3.0, 0.14},
                                                 {416.28, 3.2, 0.42},
                                                 {451.30, 2.6, 0.80},
                                                 {467.83, 2.8, 0.22},
                                                 {485.29, 2.8, 0.26},
                                                 {536.64, 3.4, 0.70},
                                                 {640.52, 3.4, 0.16}}};
  list.push_back({"holmium", "Holmium solution", "holmium in perchloric acid: 14 sharp bands, 241 to 641 nm",
                  [](double nm, double) { return 0.02 + Bands(Holmium, nm); }, true});
  // Made to show the published ratio of peak to valley at each bandwidth: 2.4, 2.1, 1.6, 1.3, 1.0 at 0.5,
  // 1, 1.5, 2, 3 nm.
  static constexpr std::array<Band, 4> Toluene{
      {{268.8, 1.559, 0.4524}, {265.67, 1.946, 0.1335}, {261.6, 2.4, 0.40}, {259.0, 18.0, 0.3153}}};
  list.push_back({"toluene", "Toluene in hexane", "toluene in hexane, 0.02 %: resolution test at 269 nm",
                  [](double nm, double) { return Bands(Toluene, nm); }, true});
  list.push_back({"kcl", "Potassium chloride",
                  "potassium chloride, 12 g/L: opaque below 200 nm, shows the stray light",
                  [](double nm, double) { return std::min(10.0, std::exp((203.0 - nm) * 0.32)); }});
}

/// Absorbance of potassium dichromate in 0.001 M perchloric acid. The four named wavelengths have the nominal
/// values of the published table; the shape between them is invented and scaled to fit.
struct DichromateRow {
  double Concentration;              ///< [mg/L]
  std::array<double, 4> Absorbance;  ///< at 235, 257, 313 and 350 nm
};

SmoothCurve DichromateCurve(const DichromateRow& row) {
  constexpr std::array<double, 4> Named{235, 257, 313, 350};
  static const std::vector<SmoothCurve::Point> Shape{
      {190, 2.3},   {200, 1.95},  {210, 1.55},  {222, 1.0},   {235, 0.743}, {245, 0.80},
      {257, 0.865}, {270, 0.74},  {285, 0.48},  {300, 0.32},  {313, 0.290}, {325, 0.40},
      {338, 0.585}, {350, 0.643}, {362, 0.59},  {375, 0.42},  {390, 0.21},  {405, 0.095},
      {420, 0.062}, {440, 0.050}, {460, 0.030}, {480, 0.012}, {500, 0.004}, {540, 0.0}};
  std::vector<SmoothCurve::Point> corrections;
  for (std::size_t i = 0; i < Named.size(); ++i) {
    const auto same = std::find_if(Shape.begin(), Shape.end(),
                                   [&](const SmoothCurve::Point& point) { return point.first == Named[i]; });
    corrections.emplace_back(Named[i], row.Absorbance[i] / same->second);
  }
  const SmoothCurve correction(std::move(corrections));
  std::vector<SmoothCurve::Point> points;
  for (const auto& [nm, absorbance] : Shape) points.emplace_back(nm, absorbance * correction.At(nm));
  return SmoothCurve(std::move(points));
}

void AddDichromates(std::vector<Sample>& list) {
  static constexpr std::array<DichromateRow, 5> Rows{{{20, {0.246, 0.286, 0.096, 0.214}},
                                                      {40, {0.493, 0.574, 0.193, 0.428}},
                                                      {60, {0.743, 0.865, 0.290, 0.643}},
                                                      {80, {0.994, 1.157, 0.387, 0.858}},
                                                      {100, {1.247, 1.452, 0.484, 1.074}}}};
  for (const DichromateRow& row : Rows) {
    const std::string amount = Format(row.Concentration, "0");
    list.push_back({"dichromate-" + amount, "Dichromate " + amount + " mg/L",
                    "potassium dichromate in 0.001 M HClO4, " + amount + " mg/L",
                    [curve = DichromateCurve(row)](double nm, double) { return curve.At(nm); }});
  }
}

/// Double-stranded DNA: 1 Abs at 260 nm for 50 ug/mL; ratio 260/280 1.86, 260/230 2.30.
double DnaShape(double nm) {
  static const SmoothCurve curve{{190, 2.2},  {200, 1.5},  {215, 0.75}, {230, 1 / 2.30},
                                 {245, 0.72}, {260, 1.0},  {270, 0.81}, {280, 1 / 1.86},
                                 {290, 0.23}, {300, 0.05}, {320, 0.0}};
  return curve.At(nm);
}

/// An albumin-like protein: 0.66 Abs at 280 nm for 1 mg/mL; ratio 260/280 0.57.
double ProteinShape(double nm) {
  static const SmoothCurve curve{{190, 50.0}, {200, 30.0}, {215, 11.0},   {230, 3.2},
                                 {240, 0.75}, {250, 0.37}, {260, 0.3762}, {270, 0.52},
                                 {280, 0.66}, {290, 0.45}, {300, 0.09},   {320, 0.0}};
  return curve.At(nm);
}

struct Mixture {
  const char* Name;
  double Dna;      ///< [ug/mL]
  double Protein;  ///< [mg/mL]
  double Haze;     ///< scattering, Abs at 320 nm; grows towards the ultraviolet with the fourth power
};

std::string LabelOf(const Mixture& mixture) {
  const std::string dna = "DNA " + Format(mixture.Dna, "0");
  const std::string protein = ShortestText(mixture.Protein);
  if (mixture.Protein == 0.0) return dna + " ug/mL";
  if (mixture.Dna == 0.0) return "Protein " + protein + " mg/mL";
  return dna + " ug/mL + protein " + protein;
}

void AddBiologicals(std::vector<Sample>& list) {
  static constexpr std::array<Mixture, 8> Mixtures{{{"dna-10", 10, 0, 0.0},
                                                    {"dna-25", 25, 0, 0.0},
                                                    {"dna-50", 50, 0, 0.002},
                                                    {"protein-0.5", 0, 0.5, 0.0},
                                                    {"protein-1", 0, 1.0, 0.002},
                                                    {"mix-1", 45, 0.1, 0.002},
                                                    {"mix-2", 25, 0.4, 0.01},
                                                    {"mix-3", 10, 0.8, 0.03}}};
  for (const Mixture& mixture : Mixtures) {
    list.push_back({mixture.Name, LabelOf(mixture),
                    "DNA " + Format(mixture.Dna, "0") + " ug/mL, protein " + Format(mixture.Protein, "0.0") +
                        " mg/mL, haze " + Format(mixture.Haze, "0.000") + " Abs at 320 nm",
                    [mixture](double nm, double) {
                      return mixture.Dna / 50.0 * DnaShape(nm) + mixture.Protein * ProteinShape(nm) +
                             mixture.Haze * std::pow(320.0 / nm, 4.0);
                    }});
  }
}

/// A reaction that uses up or forms the reduced coenzyme: `reduced` is the share present in that form.
double Coenzyme(double nm, double reduced) {
  static constexpr std::array<Band, 2> Reduced{{{340.0, 56.0, 6.22}, {260.0, 32.0, 14.1}}};  // [L/(mmol cm)]
  static constexpr std::array<Band, 1> Oxidised{{{260.0, 32.0, 17.8}}};
  constexpr double Concentration = 0.2;  // [mmol/L]
  return Concentration * (reduced * Bands(Reduced, nm) + (1.0 - reduced) * Bands(Oxidised, nm));
}

void AddEnzymes(std::vector<Sample>& list) {
  list.push_back({"enzyme", "Reaction, falling",
                  "falling reaction: NADH used up, 340 nm, time constant 300 s, towards 10 %",
                  [](double nm, double s) { return Coenzyme(nm, 0.1 + 0.9 * std::exp(-s / 300.0)); }});
  list.push_back({"enzyme-up", "Reaction, rising",
                  "rising reaction: NADH formed, 340 nm, time constant 240 s, from 5 to 95 %",
                  [](double nm, double s) { return Coenzyme(nm, 0.95 - 0.9 * std::exp(-s / 240.0)); }});
}

}  // namespace

const std::vector<Sample>& AllSamples() {
  static const std::vector<Sample> samples = [] {
    std::vector<Sample> list;
    AddPlain(list);
    AddDyes(list);
    AddWavelengthStandards(list);
    AddDichromates(list);
    AddBiologicals(list);
    AddEnzymes(list);
    return list;
  }();
  return samples;
}

const Sample* FindSample(std::string_view name) {
  const auto& samples = AllSamples();
  const auto found =
      std::find_if(samples.begin(), samples.end(), [&](const Sample& sample) { return sample.Name == name; });
  return found == samples.end() ? nullptr : &*found;
}

double Transmittance(const Sample& sample, double nm, double bandwidth, double seconds) {
  if (sample.Blocks) return 0.0;
  const auto at = [&](double wavelength) { return std::pow(10.0, -sample.Absorbance(wavelength, seconds)); };
  return sample.SharpBands ? optics::ThroughSlit(nm, bandwidth, at) : at(nm);
}

}  // namespace spectrane
