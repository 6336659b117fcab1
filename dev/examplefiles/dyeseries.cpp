// A dye series: a straight line through five standards, and three samples read from it.
#include <vector>

#include "examplefiles/examples.h"
#include "files/quafile.h"
#include "link/function.h"
#include "modes/quantitation/curvefit.h"

namespace spectrane {
namespace {

constexpr double kWavelength = 546.0;
constexpr std::int32_t kDyeSamples = 10;

struct Solution {
  const char* Sample;
  double Concentration;  ///< [mg/L]
};
constexpr Solution kStandards[] = {{"dye-1", 1}, {"dye-3", 4}, {"dye-5", 8}, {"dye-7", 15}, {"dye-8", 20}};
constexpr Solution kUnknowns[] = {{"dye-2", 2}, {"dye-4", 6}, {"dye-6", 10}};

double Measure(ExampleBench& bench, const char* sample, const Blank& blank) {
  bench.PutInBeam(sample);
  bench.UseGain(blank.Gain);
  return AbsFromEnergy(bench.Read(kDyeSamples), blank.FullEnergy, blank.DarkEnergy);
}

QuaOption OptionFor(const Blank& blank) {
  QuaOption option;
  option.FittingMethod = static_cast<std::int32_t>(FittingMethod::FirstOrder);
  option.CurveItem = static_cast<std::int32_t>(CurveSource::Standards);
  option.ConcUnit = "mg/L";
  option.WaveLengthNumber = 1;
  option.WaveLengthList = {kWavelength, kWavelength, kWavelength, 0.0};
  option.WaveLengthPara = {1.0, 0.0, 0.0, 0.0};
  option.BlankFullEnergy[0] = blank.FullEnergy;
  option.BlankDarkEnergy[0] = blank.DarkEnergy;
  option.BlankGain[0] = blank.Gain;
  option.BlankDone = true;
  return option;
}

}  // namespace

void MakeDye(ExampleBench& bench, const std::string& folder) {
  bench.MoveTo(kWavelength);
  bench.PutInBeam("blank");
  const Blank blank = bench.TakeBlank();
  QuaOption option = OptionFor(blank);
  for (const Solution& standard : kStandards) {
    const auto row = static_cast<std::size_t>(option.SampleNumber++);
    option.StandardName[row] = "Standard " + std::to_string(option.SampleNumber);
    option.StandardNote[row] = LabelOf(standard.Sample);
    option.StandardAbs[row][0] = Measure(bench, standard.Sample, blank);
    option.StandardAbsSet[row] = true;
    option.StandardConc[row] = standard.Concentration;
    option.StandardConcSet[row] = true;
  }
  CreateCurve(option);
  std::vector<QuaRecord> records;
  for (const Solution& unknown : kUnknowns) {
    QuaRecord record;
    record.Name = "Unknown " + std::to_string(records.size() + 1);
    record.Abs[0] = Measure(bench, unknown.Sample, blank);
    record.Conc = CalcConc(option, record.Abs[0] * option.WaveLengthPara[0]);
    record.Note = "weighed in: " + LabelOf(unknown.Sample);
    records.push_back(record);
  }
  Save(QuaModule(), folder + "/dye.qua", option, records);
}

}  // namespace spectrane
