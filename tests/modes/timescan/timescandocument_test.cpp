#include "modes/timescan/timescandocument.h"

#include "base/basesupport.h"
#include "base/notfinite.h"
#include "base/numericfault.h"
#include "modes/timescan/timescanaxes.h"

namespace spectrane {
namespace {

class TimeScanDocumentTest : public testing::Test {
 protected:
  std::string ScanFile() const { return folder_.Path("a.tis"); }
  void Measure(std::int32_t points) {
    document_.BeginTest();
    for (std::int32_t i = 0; i < points; ++i) document_.Append(1000 + i);
    document_.EndTest(points);
  }
  TemporaryFolder folder_;
  TimeScanDocument document_;
};

TEST_F(TimeScanDocumentTest, StartsWithThePlaceholdersOfABlank) {
  EXPECT_EQ(document_.Option().FullEnergy, 30000);
  EXPECT_EQ(document_.Option().DarkEnergy, 100);
  EXPECT_EQ(document_.Option().GainNo, 1);
  EXPECT_EQ(document_.Interval(), 200);
  EXPECT_EQ(document_.PointTotal(), 5001);
  EXPECT_FALSE(document_.IsModified());
}

TEST_F(TimeScanDocumentTest, PointsHaveTheTimesOfTheSchedule) {
  document_.Configure(document_.Option(), 100, 200);
  Measure(3);
  EXPECT_EQ(document_.Point(0).Time, 100.0);
  EXPECT_EQ(document_.Point(1).Time, 100.2);
  EXPECT_EQ(document_.Point(2).Time, 100.4);
  EXPECT_THROW(document_.Point(3), NumericFault);
  EXPECT_THROW(document_.Point(-1), NumericFault);
}

TEST_F(TimeScanDocumentTest, ValuesFollowFromTheBlank) {
  document_.SetBlank(10100, 100, 4);
  document_.BeginTest();
  document_.Append(1100);
  EXPECT_DOUBLE_EQ(document_.PointTrans(0), 10);
  EXPECT_DOUBLE_EQ(document_.PointAbs(0), 1);
  document_.SetBlank(2100, 100, 4);
  EXPECT_DOUBLE_EQ(document_.PointTrans(0), 50);
  EXPECT_EQ(document_.AllAbs(), (std::vector<double>{document_.PointAbs(0)}));
}

TEST_F(TimeScanDocumentTest, HoldsTenThousandPoints) {
  Measure(0);
  for (std::int32_t i = 0; i < kMostTestPoints; ++i) ASSERT_TRUE(document_.Append(i));
  EXPECT_FALSE(document_.Append(1));
  EXPECT_EQ(document_.DataCount(), 10000);
}

TEST_F(TimeScanDocumentTest, AFileGivesBackWhatWasSaved) {
  TSOption option = document_.Option();
  option.WorkWL = 340.5;
  option.IntervalSecond = 3;
  option.DisplayMode = 2;
  option.AbsBottom = -0.25;
  document_.Configure(option, 10.4, 70.5);
  document_.SetBlank(45000, 321, 5);
  Measure(61);
  ASSERT_TRUE(document_.SaveFile(ScanFile()));
  EXPECT_FALSE(document_.IsModified());
  EXPECT_EQ(document_.FileName(), ScanFile());

  TimeScanDocument read;
  ASSERT_TRUE(read.OpenFile(ScanFile()));
  EXPECT_EQ(read.DataCount(), 61);
  EXPECT_EQ(read.StartSecond(), 10);
  EXPECT_EQ(read.EndSecond(), 70) << "half to even";
  EXPECT_EQ(read.Point(60), document_.Point(60));
  EXPECT_EQ(read.PointAbs(7), document_.PointAbs(7));
  TSOption expected = option;
  expected.StartSecond = 10;
  expected.EndSecond = 70;
  expected.DataCount = 61;
  expected.FullEnergy = 45000;
  expected.DarkEnergy = 321;
  expected.GainNo = 5;
  EXPECT_EQ(read.Option(), expected);
}

TEST_F(TimeScanDocumentTest, TimesBeyondAFileAreHeldInside) {
  document_.Configure(document_.Option(), kNaN, 1e300);
  ASSERT_TRUE(document_.SaveFile(ScanFile()));
  TimeScanDocument read;
  ASSERT_TRUE(read.OpenFile(ScanFile()));
  EXPECT_EQ(read.StartSecond(), 0);
  EXPECT_EQ(read.EndSecond(), 2147483647);
}

TEST_F(TimeScanDocumentTest, AFileThatEndsTooSoonGivesThePointsThatItHas) {
  constexpr std::size_t kFirstPoint = 174;
  constexpr std::size_t kPointSize = 12;
  Measure(5);
  ASSERT_TRUE(document_.SaveFile(ScanFile()));
  const std::string bytes = ReadBytes(ScanFile());
  ASSERT_EQ(bytes.size(), kFirstPoint + 5 * kPointSize);
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    SCOPED_TRACE(length);
    std::ofstream(ScanFile(), std::ios::binary | std::ios::trunc) << bytes.substr(0, length);
    TimeScanDocument read;
    read.BeginTest();
    for (const int energy : {7, 8, 9}) read.Append(energy);
    read.EndTest(3);
    EXPECT_FALSE(read.OpenFile(ScanFile()));
    EXPECT_TRUE(read.LastFault());
    const std::size_t whole = length < kFirstPoint ? 0 : (length - kFirstPoint) / kPointSize;
    EXPECT_EQ(read.IsHalfLoaded(), whole > 0);
    if (whole == 0) {
      EXPECT_EQ(read.DataCount(), 3) << "the document is as it was";
      EXPECT_EQ(read.Point(0).Energy, 7);
      EXPECT_TRUE(read.IsModified());
    } else {
      ASSERT_EQ(read.DataCount(), static_cast<std::int32_t>(whole));
      EXPECT_EQ(read.Point(read.DataCount() - 1), document_.Point(read.DataCount() - 1));
      EXPECT_FALSE(read.SaveFile(ScanFile())) << "the points that are missing would be lost";
      EXPECT_EQ(ReadBytes(ScanFile()).size(), length);
    }
  }
}

TEST_F(TimeScanDocumentTest, WhatWasReadOfADamagedFileIsSavedUnderAnotherName) {
  Measure(5);
  ASSERT_TRUE(document_.SaveFile(ScanFile()));
  const std::string bytes = ReadBytes(ScanFile());
  std::ofstream(ScanFile(), std::ios::binary | std::ios::trunc) << bytes.substr(0, bytes.size() - 1);
  TimeScanDocument read;
  ASSERT_FALSE(read.OpenFile(ScanFile()));
  ASSERT_TRUE(read.IsHalfLoaded());
  const std::string other = folder_.Path("b.tis");
  ASSERT_TRUE(read.SaveFile(other));
  EXPECT_FALSE(read.IsHalfLoaded());
  EXPECT_EQ(ReadBytes(ScanFile()).size(), bytes.size() - 1);
  TimeScanDocument saved;
  ASSERT_TRUE(saved.OpenFile(other));
  EXPECT_EQ(saved.DataCount(), 4);
  EXPECT_EQ(saved.Point(3), document_.Point(3));
}

TEST_F(TimeScanDocumentTest, AnImpossibleNumberOfPointsIsRefusedBeforeAnyMemoryIsTaken) {
  Measure(5);
  ASSERT_TRUE(document_.SaveFile(ScanFile()));
  const std::string bytes = ReadBytes(ScanFile());
  const std::pair<std::string, bool> counts[] = {{std::string("\xff\xff\xff\x7f", 4), false},  // 2^31 - 1
                                                 {std::string("\xff\xff\xff\xff", 4), false},  // -1
                                                 {std::string("\x12\x27\0\0", 4), false},      // 10002
                                                 {std::string("\x04\0\0\0", 4), true}};
  for (const auto& [count, opens] : counts) {
    std::ofstream(ScanFile(), std::ios::binary | std::ios::trunc)
        << bytes.substr(0, 158) << count << bytes.substr(162);
    TimeScanDocument read;
    EXPECT_EQ(read.OpenFile(ScanFile()), opens);
    EXPECT_EQ(read.DataCount(), opens ? 4 : 0);
    EXPECT_FALSE(read.IsHalfLoaded());
  }
}

TEST_F(TimeScanDocumentTest, PointsKeepTheWavelengthAndTheIntervalThatTheyWereMeasuredWith) {
  Measure(3);
  TSOption other = document_.Option();
  other.WorkWL = 600;
  other.IntervalSecond = 9;
  document_.Configure(other, 0, 1000);
  EXPECT_EQ(document_.PointWavelength(), 546);
  ASSERT_TRUE(document_.SaveFile(ScanFile()));
  TimeScanDocument read;
  ASSERT_TRUE(read.OpenFile(ScanFile()));
  EXPECT_EQ(read.Option().WorkWL, 546);
  EXPECT_EQ(read.Option().IntervalSecond, 1);
  EXPECT_EQ(read.PointWavelength(), 546);
  document_.BeginTest();
  EXPECT_EQ(document_.PointWavelength(), 600) << "the next test goes there";
  EXPECT_EQ(document_.PointInterval(), 9);
}

TEST_F(TimeScanDocumentTest, AFailedSaveKeepsItModified) {
  Measure(3);
  EXPECT_FALSE(document_.SaveFile(folder_.Path("nowhere/a.tis")));
  EXPECT_TRUE(document_.IsModified());
  EXPECT_EQ(document_.FileName(), "");
  EXPECT_TRUE(document_.LastFault());
}

}  // namespace
}  // namespace spectrane
