#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "simulator/exactinstrument.h"
#include "simulator/simulatedline.h"

namespace spectrane {
namespace {

/// The program's side of the line: commands out, numbers in.
class Bench {
 public:
  explicit Bench(const InstrumentOptions& options = Exact()) : Line(options) {}

  std::vector<double> Ask(const std::string& command) {
    std::string reply = BytesOf(Line.Receive(command + "\r", NowMs)).substr(command.size() + 2);
    std::vector<double> values;
    for (std::size_t end = reply.find('\r'); end != std::string::npos; end = reply.find('\r')) {
      values.push_back(std::atof(reply.c_str()));
      reply.erase(0, end + 2);
    }
    return values;
  }

  /// Blank in, rezero; then absorbances are against it.
  void Blank(double nm) {
    Ask("swl " + std::to_string(nm));
    Line.Model().PutInBeam("blank", NowMs);
    const auto values = Ask("rezero");
    Full = values.at(0);
    Gain = static_cast<int>(values.at(1));
    Dark = Ask("getdark").at(static_cast<std::size_t>(Gain - 1));
  }

  double Absorbance() { return -std::log10((Ask("ge 1").at(0) - Dark) / (Full - Dark)); }
  double Absorbance(const std::string& sample) {
    EXPECT_TRUE(Line.Model().PutInBeam(sample, NowMs)) << sample;
    return Absorbance();
  }

  SimulatedLine Line;
  std::int64_t NowMs = 0;
  double Full = 0.0;
  double Dark = 0.0;
  int Gain = 0;
};

double Variance(const std::vector<double>& values) {
  double sum = 0.0;
  for (const double value : values) sum += value;
  const double mean = sum / static_cast<double>(values.size());
  double squares = 0.0;
  for (const double value : values) squares += (value - mean) * (value - mean);
  return squares / static_cast<double>(values.size() - 1);
}

std::vector<double> Readings(Bench& bench, int rounds) {
  std::vector<double> all;
  for (int i = 0; i < rounds; ++i) {
    const auto values = bench.Ask("ge 200");
    all.insert(all.end(), values.begin(), values.end());
  }
  return all;
}

TEST(Chain, DyesObeyBeersLaw) {
  Bench bench;
  bench.Blank(546.0);
  const double concentrations[] = {1, 2, 4, 6, 8, 10, 15, 20};
  for (int i = 0; i < 8; ++i) {
    EXPECT_NEAR(bench.Absorbance("dye-" + std::to_string(i + 1)), 0.1 * concentrations[i], 0.001) << i + 1;
  }
}

TEST(Chain, DichromateGivesTheNominalTable) {
  const struct {
    int Concentration;
    double At235, At257, At313, At350;
  } table[] = {{20, .246, .286, .096, .214},
               {40, .493, .574, .193, .428},
               {60, .743, .865, .290, .643},
               {80, .994, 1.157, .387, .858},
               {100, 1.247, 1.452, .484, 1.074}};
  for (int slit = 1; slit <= 5; ++slit) {
    Bench bench;
    bench.Ask("setslip " + std::to_string(slit));
    for (const auto& row : table) {
      const std::string sample = "dichromate-" + std::to_string(row.Concentration);
      const std::pair<double, double> values[] = {
          {235.0, row.At235}, {257.0, row.At257}, {313.0, row.At313}, {350.0, row.At350}};
      for (const auto& [nm, absorbance] : values) {
        bench.Blank(nm);
        EXPECT_NEAR(bench.Absorbance(sample), absorbance, 0.001)
            << sample << " at " << nm << " slit " << slit;
      }
    }
  }
}

TEST(Chain, BlankReadsNearFiftyThousandAtEveryWavelength) {
  Bench bench;
  for (double nm = 190.0; nm <= 1100.0; nm += 10.0) {
    bench.Blank(nm);
    EXPECT_NEAR(bench.Full - bench.Dark, 49900.0, 1.0) << nm;
    EXPECT_NEAR(bench.Absorbance(), 0.0, 1e-5) << nm;
  }
}

TEST(Rezero, TakesTheHighestGainThatStaysBelowTheAim) {
  for (const double nm : {190.0, 260.0, 339.0, 340.0, 546.0, 800.0, 1100.0}) {
    for (int slit = 1; slit <= 5; ++slit) {
      Bench bench;
      bench.Ask("setslip " + std::to_string(slit));
      bench.Blank(nm);
      const double light = bench.Line.Model().Light(0);
      EXPECT_LE(light * std::pow(2.0, bench.Gain - 1), 49900.0) << nm << " slit " << slit;
      if (bench.Gain < 8) {
        EXPECT_GT(light * std::pow(2.0, bench.Gain), 49900.0) << nm << " slit " << slit;
      }
    }
  }
}

TEST(Rezero, NeedsMoreGainForANarrowSlitAndADarkSample) {
  Bench bench;
  bench.Ask("setslip 5");
  bench.Blank(546.0);
  const int wide = bench.Gain;
  bench.Ask("setslip 1");
  bench.Blank(546.0);
  EXPECT_GT(bench.Gain, wide);
  bench.Line.Model().PutInBeam("filter-1.0", 0);
  EXPECT_GT(bench.Ask("rezero").at(1), bench.Gain);
}

TEST(Rezero, WithoutLightGivesTheTopGainAndItsDarkEnergy) {
  Bench bench;
  bench.Line.Model().PutInBeam("closed", 0);
  EXPECT_EQ(bench.Ask("rezero"), (std::vector<double>{162, 8}));
}

TEST(Energy, WithoutLightIsTheDarkEnergyOfTheGain) {
  InstrumentOptions options = Exact();
  options.Gains = 11;
  Bench bench(options);
  bench.Line.Model().PutInBeam("closed", 0);
  const double dark[] = {52, 55, 60, 68, 80, 98, 124, 162, 218, 300, 420};
  for (int gain = 1; gain <= 11; ++gain) {
    bench.Ask("sa " + std::to_string(gain));
    EXPECT_EQ(bench.Ask("ge 1").at(0), dark[gain - 1]) << gain;
  }
}

TEST(Energy, DoublesWithEachGainAndStopsAtFullScale) {
  Bench bench;
  bench.Ask("sa 1");
  const double one = bench.Ask("ge 1").at(0) - 52;
  bench.Ask("sa 2");
  EXPECT_NEAR(bench.Ask("ge 1").at(0) - 55, 2.0 * one, 2.0);
  bench.Ask("sa 8");
  EXPECT_EQ(bench.Ask("ge 1").at(0), 65535);
}

TEST(Energy, FollowsTheSlit) {
  Bench bench;
  bench.Ask("sa 1");
  const double narrow = bench.Ask("ge 1").at(0) - 52;
  bench.Ask("setslip 5");
  EXPECT_NEAR((bench.Ask("ge 1").at(0) - 52) / narrow, 5.0, 0.01);
}

TEST(Energy, NeedsTheLampOfTheWavelength) {
  Bench bench;
  bench.Ask("sa 4");
  bench.Ask("wuoff");
  EXPECT_EQ(bench.Ask("ge 1").at(0), 68) << "tungsten off at 546 nm";
  bench.Ask("swl 260");
  EXPECT_GT(bench.Ask("ge 1").at(0), 1000) << "deuterium lit at 260 nm";
  bench.Line.Model().Deuterium.Dead = true;
  EXPECT_EQ(bench.Ask("ge 1").at(0), 68);
  EXPECT_EQ(bench.Ask("getd2").at(0), 1) << "a burnt-out lamp still counts as switched on";
}

TEST(Energy, ChangesLampAtTheSwitchWavelength) {
  Bench bench;
  bench.Ask("d2off");
  bench.Ask("sa 4");
  bench.Ask("swl 350");
  EXPECT_GT(bench.Ask("ge 1").at(0), 1000);
  bench.Ask("setlampwl 350.1");
  EXPECT_EQ(bench.Ask("ge 1").at(0), 68);
  bench.Ask("setlampwl 350.0");
  EXPECT_GT(bench.Ask("ge 1").at(0), 1000) << "the switch wavelength itself belongs to the tungsten lamp";
}

TEST(Energy, ComesUpAfterTheLampWasLit) {
  InstrumentOptions options;
  options.Noise = 0.0;
  Bench bench(options);
  bench.Ask("swl 260");
  const double steady = bench.Line.Model().Light(bench.NowMs);
  bench.Ask("d2off");
  bench.Ask("d2on");
  const std::int64_t lit = bench.Line.BusyUntilMs();
  EXPECT_NEAR(bench.Line.Model().Light(lit) / steady, 0.97, 0.001);
  EXPECT_NEAR(bench.Line.Model().Light(lit + 600'000) / steady, 1.0, 0.0001);
}

TEST(StrayLight, LimitsTheAbsorbance) {
  Bench bench;
  bench.Line.Model().StrayBase = 0.01;
  bench.Blank(546.0);
  EXPECT_NEAR(bench.Absorbance("filter-3.0"), -std::log10(0.011 / 1.01), 0.001);
  EXPECT_NEAR(bench.Absorbance("filter-0.3"), -std::log10((std::pow(10.0, -0.3) + 0.01) / 1.01), 0.0001);
}

TEST(StrayLight, ShowsInPotassiumChlorideBelow200) {
  Bench bench;
  bench.Blank(198.0);
  EXPECT_GT(bench.Absorbance("kcl"), 2.0);
  bench.Blank(190.0);
  EXPECT_NEAR(bench.Absorbance("kcl"), -std::log10(5e-6 * 101.0), 0.02);
}

TEST(NoiseOfReadings, IsTheSameForTheSameSeed) {
  InstrumentOptions options = Exact();
  options.Noise = 1.0;
  Bench first(options);
  Bench second(options);
  options.Seed = 2;
  Bench third(options);
  first.Ask("rezero");
  second.Ask("rezero");
  third.Ask("rezero");
  const auto readings = first.Ask("ge 50");
  EXPECT_EQ(readings, second.Ask("ge 50"));
  EXPECT_NE(readings, third.Ask("ge 50"));
  EXPECT_GT(Variance(readings), 1.0);
}

TEST(NoiseOfReadings, GrowsAsShotNoiseAndWithItsFactor) {
  InstrumentOptions options = Exact();
  options.Noise = 1.0;
  Bench bench(options);
  bench.Blank(546.0);
  const double amplification = std::pow(2.0, bench.Gain - 1) * bench.Line.Model().Trim();
  const double blank = Variance(Readings(bench, 50));
  // 1000 electrons a count, one count of the amplifier, a twelfth from rounding.
  EXPECT_NEAR(blank, 49900.0 * amplification / 1000.0 + 1.0 + 1.0 / 12.0, 0.06 * blank);
  bench.Line.Model().PutInBeam("filter-1.0", 0);
  EXPECT_NEAR(Variance(Readings(bench, 50)), 4990.0 * amplification / 1000.0 + 1.0 + 1.0 / 12.0,
              0.006 * blank);
  bench.Line.Model().Noise = 3.0;
  EXPECT_NEAR(Variance(Readings(bench, 50)), 9.0 * (4990.0 * amplification / 1000.0 + 1.0), 0.06 * blank);
  bench.Line.Model().Noise = 0.0;
  EXPECT_EQ(Variance(Readings(bench, 1)), 0.0);
}

TEST(NoiseOfReadings, HasNoTraceOfTheReadingBefore) {
  SeededNoise noise(7);
  constexpr int Count = 100'000;
  double sum = 0.0;
  double products = 0.0;
  double fourth = 0.0;
  double before = noise.Normal();
  for (int i = 0; i < Count; ++i) {
    const double value = noise.Normal();
    sum += value;
    products += value * before;
    fourth += value * value * value * value;
    before = value;
  }
  EXPECT_NEAR(sum / Count, 0.0, 0.02);
  EXPECT_NEAR(products / Count, 0.0, 0.02);
  EXPECT_NEAR(fourth / Count, 3.0, 0.2) << "fourth moment of the normal distribution";
}

TEST(NoiseOfReadings, LeavesTheMeanAlone) {
  InstrumentOptions options = Exact();
  Bench bench(options);
  bench.Blank(546.0);
  const double exact = bench.Ask("ge 1").at(0);
  bench.Line.Model().Noise = 1.0;
  double sum = 0.0;
  for (const double value : Readings(bench, 50)) sum += value;
  EXPECT_NEAR(sum / 10'000.0, exact, 1.0);
}

TEST(Enzyme, FallsWithTheTimeInTheBeam) {
  Bench bench;
  bench.Blank(340.0);
  // 0.2 mmol/L of 6.22 L/(mmol cm); after one time constant 0.1 + 0.9/e of it is left.
  EXPECT_NEAR(bench.Absorbance("enzyme"), 1.244, 0.001);
  bench.NowMs = 300'000;
  EXPECT_NEAR(bench.Absorbance(), 1.244 * (0.1 + 0.9 / std::exp(1.0)), 0.001);
  EXPECT_NEAR(bench.Absorbance("enzyme"), 1.244, 0.001) << "put in anew, it starts anew";
  EXPECT_NEAR(bench.Absorbance("enzyme-up"), 1.244 * 0.05, 0.001);
}

TEST(Enzyme, StartsWhenItsCellFirstComesIntoTheBeam) {
  InstrumentOptions options = Exact();
  options.Sampler = true;
  Bench bench(options);
  bench.Blank(340.0);
  bench.Line.Model().FillCell(3, "enzyme", 0);
  bench.NowMs = 100'000;
  bench.Ask("setsampler 3");
  EXPECT_NEAR(bench.Absorbance(), 1.244, 0.001);
  bench.Ask("setsampler 1");
  bench.NowMs = 400'000;
  bench.Ask("setsampler 3");
  EXPECT_NEAR(bench.Absorbance(), 1.244 * (0.1 + 0.9 / std::exp(1.0)), 0.001)
      << "it goes on outside the beam";
}

TEST(Sampler, MovesTheNamedCellIntoTheBeam) {
  InstrumentOptions options = Exact();
  options.Sampler = true;
  Bench bench(options);
  EXPECT_EQ(bench.Ask("getsampler").at(0), 1);
  bench.Blank(546.0);
  const double concentrations[] = {0, 1, 2, 4, 6, 8, 10, 15};
  for (int cell = 1; cell <= 8; ++cell) {
    bench.Ask("setsampler " + std::to_string(cell));
    EXPECT_NEAR(bench.Absorbance(), 0.1 * concentrations[cell - 1], 0.001) << cell;
  }
  EXPECT_EQ(BytesOf(bench.Line.Receive("setsampler 9\r", 0)), "setsampler 9\r\nInvalid Command.\r\n>");
  EXPECT_EQ(bench.Line.Model().Cell(), 8);
}

TEST(Sampler, RemovedLeavesTheShelf) {
  InstrumentOptions options = Exact();
  options.Sampler = true;
  options.Beam = "dye-8";
  SimulatedLine line(options);
  EXPECT_EQ(line.Model().CellName(1), "dye-8");
  line.Model().FitSampler(false, 0);
  EXPECT_EQ(line.Model().InBeam().Name, "blank");
}

TEST(Restart, ForgetsGainBlankWavelengthAndSlitButNotTheBeam) {
  Bench bench;
  bench.Blank(260.0);
  bench.Ask("setslip 4");
  bench.Ask("wuoff");
  bench.Line.Model().PutInBeam("dye-5", 0);
  bench.Line.Model().Restart(0);
  EXPECT_EQ(bench.Line.Model().Gain(), 1);
  EXPECT_EQ(bench.Line.Model().Trim(), 1.0);
  EXPECT_EQ(bench.Ask("getwl").at(0), 546.0);
  EXPECT_EQ(bench.Ask("getslip").at(0), 2);
  EXPECT_EQ(bench.Ask("getwu").at(0), 1);
  EXPECT_EQ(bench.Line.Model().InBeam().Name, "dye-5");
}

TEST(Drive, JammedAnswersButStandsStill) {
  Bench bench;
  bench.Line.Model().Jammed = true;
  EXPECT_EQ(BytesOf(bench.Line.Receive("swl  260\r", 0)), "swl  260\r\n>");
  EXPECT_EQ(bench.Ask("getwl").at(0), 546.0);
}

TEST(ResetDark, StoresWhatItMeasuresWhateverStandsInTheBeam) {
  InstrumentOptions options = Exact();
  options.Noise = 1.0;
  Bench bench(options);
  const auto dark = bench.Ask("resetdark");
  ASSERT_EQ(dark.size(), 8U);
  const double expected[] = {52, 55, 60, 68, 80, 98, 124, 162};
  for (std::size_t i = 0; i < 8; ++i) EXPECT_NEAR(dark[i], expected[i], 1.0) << i + 1;
  EXPECT_EQ(bench.Ask("getdark"), dark);
  EXPECT_EQ(bench.Line.Model().Gain(), 1);
}

}  // namespace
}  // namespace spectrane
