// A reaction: absorbance at one wavelength over time.
#include <vector>

#include "examplefiles/examples.h"
#include "files/tsfile.h"

namespace spectrane {

void MakeEnzyme(ExampleBench& bench, const std::string& folder) {
  constexpr std::int32_t kTwoSeconds = 4;  // index of the interval
  constexpr std::int64_t kIntervalMs = 2000;
  constexpr std::int32_t kSamples = 20;
  TSOption option;
  option.WorkWL = 340.0;
  option.EndSecond = 400;
  option.IntervalSecond = kTwoSeconds;
  option.DisplayMode = 1;
  option.AbsTop = 1.5;
  option.TransTop = 100.0;

  // Tungsten has little left at 340 nm; the deuterium lamp serves there when the lamps change above it.
  bench.ChangeLampsAt(360.0);
  bench.MoveTo(option.WorkWL);
  bench.PutInBeam("blank");
  const Blank blank = bench.TakeBlank();
  option.GainNo = blank.Gain;
  option.FullEnergy = blank.FullEnergy;
  option.DarkEnergy = blank.DarkEnergy;

  bench.PutInBeam("enzyme");
  std::vector<TSRecord> points;
  for (int i = 0; i * kIntervalMs <= option.EndSecond * std::int64_t{1000}; ++i) {
    const std::int32_t energy = bench.Read(kSamples);
    // The schedule's time; the reading itself comes on top of each interval, as in every time scan.
    points.push_back({energy, static_cast<double>(i * kIntervalMs) / 1000.0});
    bench.Wait(kIntervalMs);
  }
  Save(TSModule(), folder + "/enzyme.tis", option, points);
}

}  // namespace spectrane
