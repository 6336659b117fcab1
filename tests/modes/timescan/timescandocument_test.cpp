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

TEST_F(TimeScanDocumentTest, AFileThatEndsTooSoonLeavesTheDocumentAsItWas) {
  Measure(5);
  ASSERT_TRUE(document_.SaveFile(ScanFile()));
  const std::string bytes = ReadBytes(ScanFile());
  Measure(3);
  for (std::size_t length = 0; length < bytes.size(); length += 7) {
    std::ofstream(ScanFile(), std::ios::binary | std::ios::trunc) << bytes.substr(0, length);
    EXPECT_FALSE(document_.OpenFile(ScanFile())) << length;
    EXPECT_EQ(document_.DataCount(), 3);
    EXPECT_TRUE(document_.IsModified());
  }
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
