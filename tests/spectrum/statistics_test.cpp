#include "spectrum/statistics.h"

#include <gtest/gtest.h>

#include <vector>

#include "base/notfinite.h"

namespace spectrane {
namespace {

/// 500 to 504 nm; the absorbances are no logarithms of the transmittances, so that each shows where it comes
/// from.
struct FivePoints {
  std::vector<double> Wavelength = {500, 501, 502, 503, 504};
  std::vector<double> Trans = {40, 80, 20, 80, 20};
  std::vector<double> Abs = {1, 2, 3, 4, 5};
  SpectrumPoints Points() const { return {Wavelength, Trans, Abs}; }
};

struct IndexRow {
  double Wavelength;
  std::int32_t Index;
};

TEST(Statistics, AWavelengthHasThePointAtItOrTheLowerNeighbour) {
  const FivePoints five;
  for (const IndexRow& row : {IndexRow{499.9, 0},
                              {500, 0},
                              {500.1, 0},
                              {500.9, 0},
                              {501, 1},
                              {503.99, 3},
                              {504, 4},
                              {504.1, 4},
                              {1e9, 4},
                              {-kInfinity, 0},
                              {kInfinity, 4},
                              {kNaN, 4}}) {
    EXPECT_EQ(FindRecordIndexByWavelength(five.Points(), row.Wavelength), row.Index) << row.Wavelength;
  }
  EXPECT_EQ(FindRecordIndexByWavelength({}, 500), 0);
}

TEST(Statistics, AFallingSpectrumIsBelowItsFirstPointEverywhere) {
  const std::vector<double> falling = {504, 503, 502};
  EXPECT_EQ(FindRecordIndexByWavelength({falling, falling, falling}, 503), 0);
  EXPECT_EQ(FindRecordIndexByWavelength({falling, falling, falling}, 505), 2);
}

TEST(Statistics, TheTransmittanceDecidesAndOfEqualOnesTheFirst) {
  const FivePoints five;
  std::int32_t index = -1;
  EXPECT_TRUE(FindMaxInRecord(five.Points(), 500, 504, index));
  EXPECT_EQ(index, 1);
  EXPECT_TRUE(FindMinInRecord(five.Points(), 500, 504, index));
  EXPECT_EQ(index, 2);
  EXPECT_TRUE(FindMaxInRecord(five.Points(), 502, 504, index));
  EXPECT_EQ(index, 3);
  EXPECT_TRUE(FindMinInRecord(five.Points(), 500, 501, index));
  EXPECT_EQ(index, 0);
}

TEST(Statistics, BothEndsOfTheRangeCountInEitherOrder) {
  const FivePoints five;
  for (const auto& [start, end] : {std::pair{501.0, 503.0}, {503.0, 501.0}}) {
    const SpectrumValues mean = CaculateAverageData(five.Points(), start, end);
    EXPECT_EQ(mean.Trans, 60) << "(80 + 20 + 80) / 3";
    EXPECT_EQ(mean.Abs, 3) << "(2 + 3 + 4) / 3";
  }
}

TEST(Statistics, ARangeBetweenTwoPointsIsTheLowerPointAlone) {
  const FivePoints five;
  const MaxMinAverage result = CaculateMaxMinAverage(five.Points(), 501.2, 501.8);
  EXPECT_EQ(result.Max.Wavelength, 501);
  EXPECT_EQ(result.Min.Wavelength, 501);
  EXPECT_EQ(result.Average.Abs, 2);
  EXPECT_EQ(result.Average.Trans, 80);
}

TEST(Statistics, AllEightResultsAreThoseOfTheFoundPoints) {
  const FivePoints five;
  const MaxMinAverage result = CaculateMaxMinAverage(five.Points(), 0, 2000);
  EXPECT_EQ(result.Max.Wavelength, 501);
  EXPECT_EQ(result.Max.Abs, 2);
  EXPECT_EQ(result.Max.Trans, 80);
  EXPECT_EQ(result.Min.Wavelength, 502);
  EXPECT_EQ(result.Min.Abs, 3);
  EXPECT_EQ(result.Min.Trans, 20);
  EXPECT_EQ(result.Average.Abs, 3);
  EXPECT_EQ(result.Average.Trans, 48);
}

TEST(Statistics, AnEmptySpectrumGivesZeros) {
  std::int32_t index = 7;
  EXPECT_FALSE(FindMaxInRecord({}, 400, 500, index));
  EXPECT_EQ(index, 0);
  index = 7;
  EXPECT_FALSE(FindMinInRecord({}, 400, 500, index));
  EXPECT_EQ(index, 0);
  const MaxMinAverage result = CaculateMaxMinAverage({}, 400, 500);
  for (const SpectrumValues& values : {result.Max, result.Min, result.Average}) {
    EXPECT_EQ(values.Wavelength, 0);
    EXPECT_EQ(values.Abs, 0);
    EXPECT_EQ(values.Trans, 0);
  }
}

TEST(Statistics, WhatIsNoNumberIsNeverTheHighest) {
  FivePoints five;
  five.Trans[0] = kNaN;
  five.Trans[3] = kNaN;
  std::int32_t index = -1;
  EXPECT_TRUE(FindMaxInRecord(five.Points(), 500, 504, index));
  EXPECT_EQ(index, 1);
}

}  // namespace
}  // namespace spectrane
