#include "modes/timescan/timescanview.h"

#include <gtest/gtest.h>

#include "base/numericfault.h"
#include "modes/timescan/timescanpoints.h"

namespace spectrane {
namespace {

TimeScanDocument Configured(double start, double end, std::int16_t mode = 1) {
  TimeScanDocument document;
  TSOption option = document.Option();
  option.DisplayMode = mode;
  option.AbsBottom = -0.1;
  option.AbsTop = 1.5;
  document.Configure(option, start, end);
  return document;
}

TEST(TimeScanViews, HomeHasWholeSecondsHalfToEven) {
  const TimeScanView view = HomeView(Configured(10.5, 99.6));
  EXPECT_EQ(view.Time, (AxisSpan{10, 100}));
  EXPECT_EQ(view.Abs, (AxisSpan{-0.1, 1.5}));
  EXPECT_EQ(view.Trans, (AxisSpan{0, 100}));
}

TEST(TimeScanViews, WideningLeavesTheModeThatIsNotSeen) {
  const TimeScanView seen{{20, 40}, {0.4, 0.8}, {10, 60}};
  const TimeScanView abs = Widened(seen, Configured(0, 100));
  EXPECT_EQ(abs.Trans, seen.Trans);
  EXPECT_EQ(abs.Abs, WidenedAbs(seen.Abs));
  EXPECT_EQ(abs.Time, WidenedTime(seen.Time, 100));
  const TimeScanView trans = Widened(seen, Configured(0, 100, 2));
  EXPECT_EQ(trans.Abs, seen.Abs);
  EXPECT_EQ(trans.Trans, WidenedTrans(seen.Trans));
  EXPECT_THROW(Widened({{0, 30001}, {0, 3}, {0, 100}}, Configured(0, 30001)), NumericFault);
}

TEST(TimeScanViews, PointsKeepWhatAStopHasDropped) {
  TimeScanDocument document = Configured(5, 100);
  TimeScanPoints points;
  points.TakeAll(document);
  document.BeginTest();
  for (const int energy : {1000, 2000, 3000}) {
    document.Append(energy);
    points.TakeNext(document);
  }
  document.EndTest(2);
  EXPECT_EQ(points.Count(), 3);
  EXPECT_EQ(points.Time, (std::vector<double>{5, 5.2, 5.4}));
  EXPECT_EQ(points.Energy, (std::vector<std::int32_t>{1000, 2000, 3000}));
  EXPECT_EQ(points.Values(true)[1], document.PointTrans(1));
  EXPECT_EQ(points.Values(false)[1], document.PointAbs(1));
  points.TakeAll(document);
  EXPECT_EQ(points.Count(), 2);
}

}  // namespace
}  // namespace spectrane
