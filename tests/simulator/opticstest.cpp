#include <gtest/gtest.h>

#include <cmath>

#include "simulator/optics.h"
#include "simulator/samples.h"

namespace spectrane {
namespace {

double Seen(const char* sample, double nm, double bandwidth) {
  return -std::log10(Transmittance(*FindSample(sample), nm, bandwidth, 0.0));
}

/// Wavelength of the largest absorbance between the limits, in steps of 0.01 nm.
double Maximum(const char* sample, double bandwidth, double from, double to) {
  double best = from;
  for (double nm = from; nm <= to; nm += 0.01) {
    if (Seen(sample, nm, bandwidth) > Seen(sample, best, bandwidth)) best = nm;
  }
  return best;
}

/// Width at half the height above the background of 0.02.
double HalfWidth(double centre, double bandwidth) {
  const double half = (Seen("holmium", centre, bandwidth) - 0.02) / 2.0 + 0.02;
  double below = centre;
  double above = centre;
  while (Seen("holmium", below, bandwidth) > half) below -= 0.002;
  while (Seen("holmium", above, bandwidth) > half) above += 0.002;
  return above - below;
}

TEST(Optics, SlitCodesAreTheirBandwidths) {
  const double widths[] = {0.5, 1.0, 2.0, 4.0, 5.0};
  for (int code = 1; code <= 5; ++code) EXPECT_EQ(optics::SlitWidth(code), widths[code - 1]) << code;
}

TEST(Optics, GainStepsDouble) {
  EXPECT_EQ(optics::GainFactor(1), 1.0);
  EXPECT_EQ(optics::GainFactor(8), 128.0);
  EXPECT_EQ(optics::GainFactor(11), 1024.0);
}

TEST(Optics, TungstenFollowsPlancksLaw) {
  // (1000/500)^5 (exp(3.197282) − 1) / (exp(6.394564) − 1), with 1.438777e7 nm K over 4500 K.
  EXPECT_NEAR(optics::Tungsten(500.0), 32.0 * 23.46590 / 597.5743, 1e-4);
  EXPECT_DOUBLE_EQ(optics::Tungsten(1000.0), 1.0);
}

TEST(Optics, DeuteriumLineIsLowerAndWiderThroughAWiderSlit) {
  const auto height = [](double bandwidth) {
    return optics::Deuterium(486.0, bandwidth) - optics::Deuterium(495.0, bandwidth);
  };
  EXPECT_GT(height(0.5), height(1.0));
  EXPECT_GT(height(1.0), height(2.0));
  EXPECT_GT(height(0.5), 0.5);
  EXPECT_GT(optics::Deuterium(487.0, 2.0), optics::Deuterium(487.0, 0.5));
}

TEST(Optics, SlitAveragesATriangle) {
  // A unit step at the centre passes half, a straight line keeps its value at the centre.
  EXPECT_NEAR(
      optics::ThroughSlit(500.0, 4.0, [](double nm) { return nm < 500.0   ? 0.0
                                                             : nm > 500.0 ? 1.0
                                                                          : 0.5; }),
      0.5, 1e-12);
  EXPECT_NEAR(optics::ThroughSlit(500.0, 4.0, [](double nm) { return nm / 1000.0; }), 0.5, 1e-12);
  // A triangle of half width w has the variance w²/6.
  EXPECT_NEAR(optics::ThroughSlit(0.0, 3.0, [](double nm) { return nm * nm; }), 9.0 / 6.0, 0.01);
}

TEST(Samples, NamesAreUniqueAndFound) {
  for (const Sample& sample : AllSamples()) EXPECT_EQ(FindSample(sample.Name), &sample) << sample.Name;
  EXPECT_EQ(FindSample("no-such-sample"), nullptr);
}

TEST(Samples, HolmiumMaximaStandWherePublished) {
  for (const double centre : {241.13, 249.87, 278.10, 287.18, 333.44, 345.47, 361.31, 385.66, 416.28, 451.30,
                              467.83, 485.29, 536.64, 640.52}) {
    EXPECT_NEAR(Maximum("holmium", 1.0, centre - 2.0, centre + 2.0), centre, 0.1);
  }
}

TEST(Samples, HolmiumBandsGetLowerAndWiderWithTheSlit) {
  for (const double centre : {241.13, 451.30, 536.64}) {
    for (int code = 2; code <= 5; ++code) {
      const double narrow = optics::SlitWidth(code - 1);
      const double wide = optics::SlitWidth(code);
      EXPECT_LT(Seen("holmium", centre, wide), Seen("holmium", centre, narrow)) << centre << " code " << code;
      EXPECT_GT(HalfWidth(centre, wide), HalfWidth(centre, narrow)) << centre << " code " << code;
    }
  }
}

TEST(Samples, TolueneShowsThePublishedResolutionRatios) {
  const struct {
    double Bandwidth, Least, Most;
  } published[] = {{0.5, 2.4, 2.5}, {1.0, 2.0, 2.1}, {1.5, 1.6, 1.7}, {2.0, 1.3, 1.4}, {3.0, 1.0, 1.1}};
  for (const auto& row : published) {
    double valley = 9.0;
    for (double nm = 266.0; nm <= 267.5; nm += 0.1)
      valley = std::min(valley, Seen("toluene", nm, row.Bandwidth));
    const double ratio = Seen("toluene", 268.8, row.Bandwidth) / valley;
    EXPECT_GE(ratio, row.Least) << row.Bandwidth;
    EXPECT_LE(ratio, row.Most) << row.Bandwidth;
  }
}

TEST(Samples, DichromateHasItsExtremesAtTheNamedWavelengths) {
  const auto at = [](double nm) { return Seen("dichromate-60", nm, 1.0); };
  for (const double peak : {257.0, 350.0}) {
    EXPECT_GT(at(peak), at(peak - 1.0));
    EXPECT_GT(at(peak), at(peak + 1.0));
  }
  for (const double valley : {235.0, 313.0}) {
    EXPECT_LT(at(valley), at(valley - 1.0));
    EXPECT_LT(at(valley), at(valley + 1.0));
  }
}

TEST(Samples, NucleicAcidAndProteinHaveTheirRatios) {
  EXPECT_NEAR(Seen("dna-25", 260.0, 1.0), 0.5, 1e-9);
  EXPECT_NEAR(Seen("dna-25", 260.0, 1.0) / Seen("dna-25", 280.0, 1.0), 1.86, 1e-6);
  EXPECT_NEAR(Seen("dna-25", 260.0, 1.0) / Seen("dna-25", 230.0, 1.0), 2.30, 1e-6);
  EXPECT_NEAR(Seen("protein-0.5", 280.0, 1.0), 0.33, 1e-9);
  EXPECT_NEAR(Seen("protein-0.5", 260.0, 1.0) / Seen("protein-0.5", 280.0, 1.0), 0.57, 1e-6);
  EXPECT_NEAR(Seen("mix-3", 320.0, 1.0), 0.03, 1e-9);
  // 10 ug/mL DNA, 0.8 mg/mL protein, haze 0.03 (320/260)^4.
  EXPECT_NEAR(Seen("mix-3", 260.0, 1.0), 0.2 + 0.8 * 0.3762 + 0.03 * 2.294597, 1e-6);
}

}  // namespace
}  // namespace spectrane
