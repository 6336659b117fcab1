// Spectra: the holmium scan, measured and processed, and the baseline of the instrument.
#include <vector>

#include "examplefiles/examples.h"
#include "files/bslfile.h"
#include "files/wlsfile.h"
#include "files/wlsfile2.h"
#include "link/function.h"

namespace spectrane {
namespace {

constexpr std::int32_t kSpectrumSamples = 20;
/// A reading above this leaves too little room below the end of the converter [counts].
constexpr std::int32_t kHighest = 56'000;

/// One reading of the blank at the highest gain that keeps clear of the converter's end. The search begins at
/// the gain of `before`, where the neighbouring wavelength was read.
WLSRecord BlankAt(ExampleBench& bench, double nm, const WLSRecord& before) {
  const DarkEnergyTable& dark = bench.State().DarkEnergies;
  const auto darkOf = [&](std::int32_t gain) { return dark[static_cast<std::size_t>(gain)]; };
  WLSRecord point = before;
  point.Wavelength = nm;
  bench.MoveTo(nm);
  bench.UseGain(point.Gain);
  point.ReferenceEnergy = bench.Read(kSpectrumSamples);
  while (point.ReferenceEnergy > kHighest && point.Gain > 1) {
    bench.UseGain(--point.Gain);
    point.ReferenceEnergy = bench.Read(kSpectrumSamples);
  }
  // One gain amplifies twice as much as the one before.
  while (point.Gain < bench.State().GainCount &&
         2 * (point.ReferenceEnergy - darkOf(point.Gain)) + darkOf(point.Gain + 1) < kHighest) {
    bench.UseGain(++point.Gain);
    point.ReferenceEnergy = bench.Read(kSpectrumSamples);
  }
  point.DarkEnergy = darkOf(point.Gain);
  return point;
}

/// The blank over a range, ends included [nm]. No rezero comes in between, which would trim the amplifier
/// anew for every point.
std::vector<WLSRecord> ScanBlank(ExampleBench& bench, double start, double end, double step) {
  std::vector<WLSRecord> points;
  bench.PutInBeam("blank");
  WLSRecord before;
  before.Gain = bench.State().GainIndex;
  for (int i = 0; start + i * step <= end; ++i) {
    before = BlankAt(bench, start + i * step, before);
    points.push_back(before);
  }
  return points;
}

WLSOption ScanOption(double start, double end) {
  WLSOption option;
  option.StartWavelength = start;
  option.EndWavelength = end;
  option.AbsTop = 1.0;
  option.TransTop = 100.0;
  option.DisplayMode = 1;
  return option;
}

}  // namespace

void MakeHolmium(ExampleBench& bench, const std::string& folder) {
  constexpr double kStart = 230.0;
  constexpr double kEnd = 660.0;
  constexpr std::int32_t kHalfNanometre = 2;  // index of the interval
  std::vector<WLSRecord> points = ScanBlank(bench, kStart, kEnd, 0.5);
  bench.PutInBeam("holmium");
  for (WLSRecord& point : points) {
    bench.MoveTo(point.Wavelength);
    bench.UseGain(point.Gain);
    point.SampleEnergy = bench.Read(kSpectrumSamples);
  }
  WLSOption option = ScanOption(kStart, kEnd);
  option.EnergyTop = 65535;
  option.EnergyAmp = option.EnergyFilter = option.EnergyLamp = 1;
  option.IntervalWavelength = kHalfNanometre;
  Save(WLSModule(), folder + "/holmium.wls", option, points);

  // The %T and Abs of the scan as they are: smoothing, which makes such files in the program, is to take this
  // place.
  std::vector<WLS2Record> processed;
  for (const WLSRecord& point : points) {
    const double trans = TransFromEnergy(point.SampleEnergy, point.ReferenceEnergy, point.DarkEnergy);
    processed.push_back({point.Wavelength, trans, AbsFromTrans(trans)});
  }
  Save(WLS2Module(), folder + "/holmium-processed.wls", ScanOption(kStart, kEnd), processed);
}

void MakeBaseline(ExampleBench& bench, const std::string& folder) {
  BSLOption option;
  option.StartWavelength = bench.State().WavelengthMin;
  option.EndWavelength = bench.State().WavelengthMax;
  option.CreateDate = ExampleDate();
  std::vector<BSLRecord> records;
  for (const WLSRecord& point : ScanBlank(bench, option.StartWavelength, option.EndWavelength, 1.0)) {
    records.push_back({point.Wavelength, point.Gain, point.ReferenceEnergy});
  }
  Save(BSLModule(), folder + "/baseline.bsl", option, records);
}

}  // namespace spectrane
